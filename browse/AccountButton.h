#pragma once

#include "look/Accessibility.h"

#include <QAbstractButton>

#include <optional>

/// The header's account button: a person, and the account's e-mail address when one is known, cut
/// at its end where it is long.
class AccountButton : public QAbstractButton, public Pressable {
    Q_OBJECT

public:
    explicit AccountButton(QWidget *parent = nullptr);

    /// Empty: the symbol alone.
    void setEmail(const QString &email);
    /// The width there is for it, symbol and all.
    void setRoom(int width);
    /// Whether the menu that the button opens is open, which shows in its background.
    void setOpen(bool isOpen);

    void press() override { click(); }
    std::optional<bool> isOpen() const override { return m_isOpen; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int naturalWidth() const; ///< with all of the address
    int widestHere() const;
    bool isCut() const;
    void fit();

    QString m_email;
    int m_room = QWIDGETSIZE_MAX;
    bool m_isOpen = false;
};
