#pragma once

#include "model/Event.h"
#include "platform/Calendar.h"

#include <QWidget>

class SymbolLabel;

/// The line that says when and where: date, time, place, each only when there is one. The place
/// gives way first where there is no room.
class EventMeta : public QWidget {
    Q_OBJECT

public:
    explicit EventMeta(QWidget *parent = nullptr);

    /// What the symbols say to the eye is said in words to readers, which speak no text of a dialog
    /// that has but a word or two: "Heure : 14:30". To be set before the event.
    void setNamesKinds(bool namesKinds) { m_namesKinds = namesKinds; }

    void setEvent(const Event &event, const Calendar &calendar);
    /// Lets its texts be selected and copied, for good.
    void setSelectable();

    /// What the line says, for screen readers: "2026-11-14, 14:30, Salle Vaudrelle".
    const QString &spoken() const { return m_spoken; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    QList<SymbolLabel *> shownLabels() const;
    void arrange();

    SymbolLabel *m_date;
    SymbolLabel *m_time;
    SymbolLabel *m_place;
    QString m_spoken;
    bool m_namesKinds = false;
};
