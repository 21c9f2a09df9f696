#pragma once

#include "look/Symbols.h"

#include <QPushButton>

#include <optional>

/// What a button style decides: the background, the colour and the weight of the label. Padding,
/// radius, ring and the look of a disabled button are the same for all.
class ButtonStyle {
public:
    virtual ~ButtonStyle() = default;
    virtual void paintBackground(QPainter &painter, const QRectF &rect, const QPalette &palette,
                                 bool isPressed) const = 0;
    virtual QColor labelColor(const QPalette &palette) const = 0;
    virtual QFont::Weight labelWeight() const = 0;
};

/// For the one main action of a screen: white on the accent.
class PrimaryButtonStyle final : public ButtonStyle {
public:
    void paintBackground(QPainter &painter, const QRectF &rect, const QPalette &palette,
                         bool isPressed) const override;
    QColor labelColor(const QPalette &palette) const override;
    QFont::Weight labelWeight() const override { return QFont::Medium; }
};

/// For quieter actions: a light grey with a line around it.
class SecondaryButtonStyle final : public ButtonStyle {
public:
    void paintBackground(QPainter &painter, const QRectF &rect, const QPalette &palette,
                         bool isPressed) const override;
    QColor labelColor(const QPalette &palette) const override;
    QFont::Weight labelWeight() const override { return QFont::Normal; }
};

/// A push button drawn by a style. Its text is shown as it is ("&" too) and is cut at its end when
/// there is no room. Never the default of a dialog: Return presses it only when it has the focus.
class StyledButton : public QPushButton {
    Q_OBJECT

public:
    /// `style` must outlive the button.
    StyledButton(const ButtonStyle &style, const QString &text, QWidget *parent = nullptr);

    /// The text as it is shown; QAbstractButton::text() has every "&" doubled.
    const QString &label() const { return m_label; }
    void setLabel(const QString &text);
    /// Stands before the text, which is kept for the screen reader.
    void setSymbol(Symbol symbol);
    /// Writes the label in red.
    void setDestructive(bool destructive);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    int symbolWidth() const;
    int contentWidth() const;
    void paintButton(QPainter &painter) const;
    void updateToolTip();

    const ButtonStyle &m_style;
    QString m_label;
    std::optional<Symbol> m_symbol;
    bool m_destructive = false;
};

class PrimaryButton : public StyledButton {
    Q_OBJECT

public:
    explicit PrimaryButton(const QString &text, QWidget *parent = nullptr);
};

class SecondaryButton : public StyledButton {
    Q_OBJECT

public:
    explicit SecondaryButton(const QString &text, QWidget *parent = nullptr);
};
