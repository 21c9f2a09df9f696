#pragma once

#include <QMenu>

class PopupCard;

/// One entry of a Menu, its text as it is shown ("&" too).
struct MenuItem {
    QString text;
    bool isChecked = false;

    bool operator==(const MenuItem &) const = default;
};

/// A menu that drops from a widget, on a card of the application's own look, with room for
/// checkmarks. It is at least as wide as that widget.
class Menu : public QMenu {
    Q_OBJECT

public:
    /// What the focus is on when the menu opens: nothing for a mouse, an entry for the keyboard.
    enum class OpenedBy { Mouse, Keyboard };

    explicit Menu(QWidget *anchor);

    /// To be called before it opens, and whenever the marks change.
    void setItems(const QList<MenuItem> &items);
    /// Shows the menu and returns at once.
    void open(OpenedBy by);

Q_SIGNALS:
    void chosen(int index); ///< the menu is closed already

protected:
    void showEvent(QShowEvent *event) override;

private:
    void addItems(const QList<MenuItem> &items);

    QWidget *m_anchor;
    PopupCard *m_card;
};
