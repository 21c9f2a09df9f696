#include "controls/TabStrip.h"

#include "controls/TabButton.h"
#include "look/Accessibility.h"
#include "look/Colors.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

TabStrip::TabStrip(QWidget *parent)
    : QWidget(parent)
    , m_row(new QHBoxLayout(this))
{
    setAccessibleRole(this, QAccessible::PageTabList);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_row->setContentsMargins(0, 0, 0, 0);
    m_row->setSpacing(0);
    m_row->addStretch();
}

void TabStrip::addTab(const QString &title)
{
    const int index = count();
    auto *tab = new TabButton(title, this);
    tab->setFocusPolicy(Qt::ClickFocus);
    connect(tab, &TabButton::clicked, this, [this, index] { setCurrentIndex(index); });
    m_tabs.append(tab);
    m_row->insertWidget(index, tab);
    if (index == 0)
        setCurrentIndex(0);
}

void TabStrip::setCurrentIndex(int index)
{
    if (index < 0 || index >= count())
        return;
    for (int i = 0; i < count(); ++i) {
        m_tabs[i]->setChecked(i == index);
        m_tabs[i]->setFocusPolicy(i == index ? Qt::StrongFocus : Qt::ClickFocus);
    }
    if (index == m_current)
        return;
    m_current = index;
    QAccessible::State changed;
    changed.selected = true;
    QAccessibleStateChangeEvent event(m_tabs[index], changed);
    QAccessible::updateAccessibility(&event);
    Q_EMIT currentChanged(index);
}

QWidget *TabStrip::currentTab() const
{
    return m_tabs.value(m_current);
}

void TabStrip::keyPressEvent(QKeyEvent *event)
{
    int index = m_current;
    switch (event->key()) {
    case Qt::Key_Left:
        index = std::max(m_current - 1, 0);
        break;
    case Qt::Key_Right:
        index = std::min(m_current + 1, count() - 1);
        break;
    case Qt::Key_Home:
        index = 0;
        break;
    case Qt::Key_End:
        index = count() - 1;
        break;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    setCurrentIndex(index);
    if (m_current >= 0)
        m_tabs[m_current]->setFocus(Qt::TabFocusReason);
}

void TabStrip::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(QRect(0, height() - 1, width(), 1), hairline(palette()));
}
