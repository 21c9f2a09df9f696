#pragma once

#include "look/Accessibility.h"

#include <QAbstractButton>
#include <QUrl>

/// Whether an address that somebody else wrote is handed to the desktop: pages, mail and telephone,
/// and what has no scheme, but no file, script or program.
bool mayOpen(const QUrl &address);

/// An underlined text that opens an address the way the desktop does: by mouse, by keyboard and by
/// screen reader, when `mayOpen` lets it. The tooltip shows the
/// address, and screen readers tell it as the description.
class LinkLabel : public QAbstractButton, public Pressable {
    Q_OBJECT

public:
    LinkLabel(const QString &text, const QUrl &address, QWidget *parent = nullptr);

    const QUrl &address() const { return m_address; }
    void press() override { click(); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_label;
    QUrl m_address;
};
