#pragma once

#include <QCommonStyle>

/// Draws a menu on the application's card, with room for checkmarks. It draws no submenus, icons or
/// separators. Texts have every "&" doubled and show it once.
class MenuStyle : public QCommonStyle {
    Q_OBJECT

public:
    explicit MenuStyle(bool isComposited);

    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *more) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                           const QWidget *widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;

private:
    bool m_isComposited;
};
