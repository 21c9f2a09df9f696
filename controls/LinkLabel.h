#pragma once

#include "look/Accessibility.h"

#include <QAbstractButton>
#include <QUrl>

#include <optional>

/// What the desktop is handed for an address that somebody else wrote: pages, mail and telephone
/// as they stand; what has no scheme as a page, where it begins with a host as in
/// "www.exemple.fr/fete". Nothing for all else: no file, script or program.
std::optional<QUrl> addressToOpen(const QUrl &address);

/// An underlined text that opens an address the way the desktop does: by mouse, by keyboard and by
/// screen reader, as far as
/// `addressToOpen` lets it. The tooltip shows the address, and screen readers tell it as the
/// description.
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
