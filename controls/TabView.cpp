#include "controls/TabView.h"

#include "controls/TabStrip.h"

#include <QStackedLayout>
#include <QVBoxLayout>

TabView::TabView(QWidget *parent)
    : QWidget(parent)
    , m_strip(new TabStrip(this))
    , m_pages(new QStackedLayout)
{
    connect(m_strip, &TabStrip::currentChanged, this, [this](int index) {
        m_pages->setCurrentIndex(index);
        Q_EMIT currentChanged(index);
    });

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_strip);
    column->addLayout(m_pages, 1);
}

void TabView::addTab(const QString &title, QWidget *page)
{
    m_strip->addTab(title);
    // The tab key's way is the order in which widgets came into the window: the tab, then its page.
    page->setParent(nullptr);
    m_pages->addWidget(page);
}

int TabView::currentIndex() const
{
    return m_strip->currentIndex();
}

void TabView::setCurrentIndex(int index)
{
    m_strip->setCurrentIndex(index);
}

QWidget *TabView::page(int index) const
{
    return m_pages->widget(index);
}
