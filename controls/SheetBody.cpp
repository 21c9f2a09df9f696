#include "controls/SheetBody.h"

#include "controls/FingerScroll.h"
#include "controls/ThinScrollBar.h"
#include "look/Colors.h"
#include "look/Fonts.h"

#include <QKeyEvent>
#include <QLayout>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int hairlineHeight = 1;
constexpr int ringRoom = 4; ///< below a control, for its focus ring
constexpr int captionRoom = 28; ///< above it, for its caption

/// The key's meaning for what scrolls, if it has one.
QAbstractSlider::SliderAction actionOf(int key)
{
    switch (key) {
    case Qt::Key_Up:
        return QAbstractSlider::SliderSingleStepSub;
    case Qt::Key_Down:
        return QAbstractSlider::SliderSingleStepAdd;
    case Qt::Key_PageUp:
        return QAbstractSlider::SliderPageStepSub;
    case Qt::Key_PageDown:
        return QAbstractSlider::SliderPageStepAdd;
    case Qt::Key_Home:
        return QAbstractSlider::SliderToMinimum;
    case Qt::Key_End:
        return QAbstractSlider::SliderToMaximum;
    default:
        return QAbstractSlider::SliderNoAction;
    }
}

/// `room`, if the content can do with it, and otherwise what it would like to have.
int heightIn(int room, const QWidget *content, int width)
{
    const QLayout *layout = content->layout();
    if (!layout)
        return std::max(room, content->sizeHint().height());
    if (!layout->hasHeightForWidth()) {
        return layout->totalMinimumSize().height() <= room ? room
                                                           : layout->totalSizeHint().height();
    }
    return layout->totalMinimumHeightForWidth(width) <= room ? room
                                                             : layout->totalHeightForWidth(width);
}

} // namespace

/// A strip of the sheet's colour over the beginning or the end of what scrolls, with a hairline
/// towards the middle.
class SheetEdge : public QWidget {
public:
    SheetEdge(Qt::Edge at, QWidget *parent)
        : QWidget(parent)
        , m_at(at)
    {
        hide();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), windowColor(palette()));
        const int y = m_at == Qt::TopEdge ? height() - hairlineHeight : 0;
        painter.fillRect(0, y, width(), hairlineHeight, sheetHairline(palette()));
    }

private:
    Qt::Edge m_at;
};

SheetBody::SheetBody(QWidget *parent)
    : QScrollArea(parent)
    , m_bar(new ThinScrollBar(this))
    , m_above(new SheetEdge(Qt::TopEdge, this))
    , m_below(new SheetEdge(Qt::BottomEdge, this))
{
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);
    new FingerScroll(this);
    m_bar->hide();

    auto *own = verticalScrollBar();
    connect(own, &QScrollBar::rangeChanged, this, &SheetBody::followBar);
    connect(own, &QScrollBar::valueChanged, this, &SheetBody::followBar);
    connect(m_bar, &QScrollBar::valueChanged, own, &QScrollBar::setValue);
}

void SheetBody::setEdges(int above, int below)
{
    m_above->resize(width(), above);
    m_below->resize(width(), below);
    placeEdges();
}

void SheetBody::layOutContent()
{
    if (QWidget *content = widget()) {
        content->resize(width(), heightIn(height(), content, width()));
        placeEdges();
    }
}

void SheetBody::reveal(const QWidget *widget)
{
    auto *bar = verticalScrollBar();
    const int y = widget->mapTo(this->widget(), QPoint()).y();
    const int top = y - scaled(captionRoom) - m_above->height();
    const int bottom = y + widget->height() + ringRoom + m_below->height();
    // What fills the view already is in sight as far as it can be: a click into a long text would
    // lose its place.
    if (top <= bar->value() && bottom >= bar->value() + height())
        return;
    if (bottom > bar->value() + height())
        bar->setValue(bottom - height());
    if (top < bar->value())
        bar->setValue(top);
}

bool SheetBody::scroll(const QKeyEvent *event)
{
    const auto action = actionOf(event->key());
    if (action == QAbstractSlider::SliderNoAction
        || (event->modifiers() & ~Qt::KeypadModifier) != 0)
        return false;
    verticalScrollBar()->triggerAction(action);
    return true;
}

void SheetBody::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    m_bar->setGeometry(width() - ThinScrollBar::gutter, 0, ThinScrollBar::gutter, height());
    followBar();
}

void SheetBody::followBar()
{
    const auto *own = verticalScrollBar();
    m_bar->setRange(own->minimum(), own->maximum());
    m_bar->setPageStep(own->pageStep());
    m_bar->setSingleStep(own->singleStep());
    m_bar->setValue(own->value());
    m_bar->setVisible(own->maximum() > own->minimum());
    placeEdges();
}

void SheetBody::placeEdges()
{
    const auto *own = verticalScrollBar();
    m_above->setGeometry(0, 0, width(), m_above->height());
    m_below->setGeometry(0, height() - m_below->height(), width(), m_below->height());
    m_above->setVisible(m_above->height() > 0 && own->value() > own->minimum());
    m_below->setVisible(m_below->height() > 0 && own->value() < own->maximum());
    m_above->raise();
    m_below->raise();
    m_bar->raise();
}
