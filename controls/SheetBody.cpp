#include "controls/SheetBody.h"

#include "controls/ThinScrollBar.h"

SheetBody::SheetBody(QWidget *parent)
    : QScrollArea(parent)
    , m_bar(new ThinScrollBar(this))
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);
    m_bar->hide();

    auto *own = verticalScrollBar();
    connect(own, &QScrollBar::rangeChanged, m_bar, [this, own](int least, int most) {
        m_bar->setRange(least, most);
        m_bar->setPageStep(own->pageStep());
        m_bar->setSingleStep(own->singleStep());
        m_bar->setVisible(most > least);
        m_bar->raise();
    });
    connect(own, &QScrollBar::valueChanged, m_bar, &QScrollBar::setValue);
    connect(m_bar, &QScrollBar::valueChanged, own, &QScrollBar::setValue);
}

void SheetBody::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    m_bar->setGeometry(width() - ThinScrollBar::gutter, 0, ThinScrollBar::gutter, height());
    m_bar->setPageStep(verticalScrollBar()->pageStep());
}
