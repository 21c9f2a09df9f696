#include "controls/ThinScrollBar.h"

#include "look/Colors.h"
#include "look/Painting.h"

#include <QCommonStyle>
#include <QPainter>
#include <QStyleOptionSlider>

#include <algorithm>

namespace {

constexpr int endMargin = 2; ///< between the thumb and the gutter's ends

/// A scroll bar of nothing but a thumb: what is drawn and what takes the mouse agree.
class ThinStyle final : public QCommonStyle {
public:
    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override
    {
        switch (metric) {
        case PM_ScrollBarExtent:
            return ThinScrollBar::gutter;
        case PM_ScrollBarSliderMin:
            return 24;
        default:
            return QCommonStyle::pixelMetric(metric, option, widget);
        }
    }

    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                         const QWidget *widget) const override
    {
        const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option);
        if (control != CC_ScrollBar || !bar)
            return QCommonStyle::subControlRect(control, option, part, widget);
        const QRect groove = bar->rect.adjusted(0, endMargin, 0, -endMargin);
        const QRect slider = sliderRect(*bar, groove);
        switch (part) {
        case SC_ScrollBarGroove:
            return groove;
        case SC_ScrollBarSlider:
            return slider;
        case SC_ScrollBarSubPage:
            return {groove.topLeft(), QPoint(groove.right(), slider.top() - 1)};
        case SC_ScrollBarAddPage:
            return {QPoint(groove.left(), slider.bottom() + 1), groove.bottomRight()};
        default:
            return {};
        }
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                            QPainter *painter, const QWidget *widget) const override
    {
        const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option);
        if (control != CC_ScrollBar || !bar) {
            QCommonStyle::drawComplexControl(control, option, painter, widget);
            return;
        }
        if (bar->minimum == bar->maximum)
            return;
        QRect thumb = subControlRect(control, option, SC_ScrollBarSlider, widget);
        const int side = (thumb.width() - ThinScrollBar::thumb) / 2;
        thumb.adjust(side, 0, -side, 0);
        fillRounded(*painter, thumb, ThinScrollBar::thumb / 2.0, scrollThumb(bar->palette));
    }

private:
    QRect sliderRect(const QStyleOptionSlider &bar, const QRect &groove) const
    {
        const qint64 range = qint64{bar.maximum} - bar.minimum;
        int length = groove.height();
        if (range > 0) {
            const qint64 part = qint64{bar.pageStep} * length / (range + bar.pageStep);
            length = std::clamp(static_cast<int>(part), std::min(24, length), length);
        }
        const int top = sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                groove.height() - length, bar.upsideDown);
        return {groove.left(), groove.top() + top, groove.width(), length};
    }
};

} // namespace

ThinScrollBar::ThinScrollBar(QWidget *parent)
    : QScrollBar(Qt::Vertical, parent)
{
    auto *thin = new ThinStyle;
    thin->setParent(this);
    setStyle(thin);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
}
