#pragma once

#include <QObject>

class QWidget;

/// Knows whether a widget has the focus by keyboard, which is when its ring shows. A window that
/// comes back to the front, or a menu that closes, keeps what was shown before.
class KeyboardFocus : public QObject {
    Q_OBJECT

public:
    /// Always: the ring shows however the focus came (entry fields).
    enum class Shown { ByKeyboard, Always };

    /// Watches `widget`, updates it at each change, and lives as long as it.
    explicit KeyboardFocus(QWidget *widget, Shown shown = Shown::ByKeyboard);

    bool isVisible() const { return m_visible; }
    /// Whether the person came to `widget` by keyboard and sees its ring.
    static bool isVisibleOn(const QWidget *widget);

    /// Gives a widget the focus with its ring shown, also before its window is in front: for what
    /// is focused when a sheet opens.
    static void give(QWidget *widget);
    /// Gives `to` the focus as `from` has it: its ring shows if that of `from` did. For a control
    /// that is about to be hidden; the toolkit would go on as if somebody had pressed Tab.
    static void handOver(const QWidget *from, QWidget *to);

Q_SIGNALS:
    void changed(bool visible);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setVisible(bool visible);

    QWidget *m_widget;
    Shown m_shown;
    bool m_byKeyboard = false;
    bool m_visible = false;
};
