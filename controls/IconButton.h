#pragma once

#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/Symbols.h"

#include <QAbstractButton>

class KeyboardFocus;

/// A symbol of 16 in a target of 24 that presses like a button. Its name is for the tooltip and
/// the screen reader.
class IconButton : public QAbstractButton, public Pressable {
    Q_OBJECT

public:
    IconButton(Symbol symbol, const QString &name, ColorRole color = secondaryText,
               QWidget *parent = nullptr);

    void press() override { click(); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Symbol m_symbol;
    ColorRole m_color;
    KeyboardFocus *m_focus;
};
