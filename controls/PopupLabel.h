#pragma once

#include "look/Accessibility.h"
#include "look/Colors.h"

#include <QAbstractButton>

#include <optional>

class Menu;

/// A button-like label with a chevron that opens a menu: by click, Space, Return or an arrow down.
/// A label that is too long is cut at its end; the tooltip then has the whole, screen readers
/// always.
class PopupLabel : public QAbstractButton, public Pressable {
    Q_OBJECT

public:
    /// `name` says to screen readers what is chosen here.
    explicit PopupLabel(const QString &name, QWidget *parent = nullptr);

    void setLabel(const QString &label, ColorRole color = primaryText);
    const QString &label() const { return m_label; }
    /// The menu that it opens, to be filled by the owner.
    Menu *menu() const { return m_menu; }

    void press() override;
    std::optional<bool> isOpen() const override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    int textRoom() const;
    void updateToolTip();

    QString m_label;
    QString m_line; ///< of the label, what a line can show
    ColorRole m_color = primaryText;
    Menu *m_menu;
};
