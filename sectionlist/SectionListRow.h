#pragma once

#include <QWidget>

/// A row of a SectionList: recycled for one row after another. It paints the hairline above it, the
/// fill under it and the focus ring as the list says; its content is the subclass's. Its accessible
/// name and description are the subclass's too, set whenever it is filled.
class SectionListRow : public QWidget {
    Q_OBJECT

public:
    explicit SectionListRow(QWidget *parent = nullptr);

    /// The exact height, in pixels, of what the row shows now, when contentRect() has this width;
    /// paddings of its own included.
    virtual int heightFor(int width) const = 0;

    /// The row's own buttons, in the order of the tab key. They exist from the constructor on;
    /// filling the row shows or hides them. They stop the tab key in the current row only.
    virtual QList<QWidget *> buttons() const { return {}; }

    /// Where the subclass puts its content: `heightFor` high, as wide as the text column.
    QRect contentRect() const;

    bool isHovered() const { return m_state.hovered; }
    bool isPressed() const { return m_pressed; }
    bool isSelected() const { return m_state.selected; }
    bool showsFocus() const { return m_state.focusRing; }

    /// Opens the row, as a click on it does.
    void press();

Q_SIGNALS:
    /// A click, Return, Enter or Space on the row itself, not on its buttons; or a screen reader.
    /// No drag.
    void activated();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    friend class SectionListBody;

    struct State {
        bool hairline = false;
        bool hovered = false;
        bool selected = false;
        bool focusRing = false;
        bool operator==(const State &) const = default;
    };

    bool setState(const State &state); ///< true when it differs from the former one
    void setPress(bool armed, bool pressed);
    void forgetPress() { setPress(false, false); }
    bool isUnder(QPoint point) const;

    State m_state;
    QPoint m_pressedAt; ///< where the left button went down
    bool m_armed = false; ///< the left button went down on the row and is still held
    bool m_pressed = false; ///< armed, and the pointer is on the row
};
