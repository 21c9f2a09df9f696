#include "sectionlist/SectionList.h"

#include "controls/FingerScroll.h"
#include "controls/ThinScrollBar.h"
#include "look/Colors.h"
#include "sectionlist/SectionListBody.h"
#include "sectionlist/SectionListFocus.h"
#include "sectionlist/SectionListHeading.h"
#include "sectionlist/SectionListMetrics.h"

#include <QPainter>
#include <QScopedValueRollback>
#include <QWheelEvent>

#include <algorithm>
#include <functional>
#include <utility>

namespace Metrics = SectionListMetrics;

SectionList::SectionList(std::function<SectionListRow *()> makeRow, QWidget *parent)
    : QWidget(parent)
    , m_body(new SectionListBody(std::move(makeRow), this))
    , m_heading(new SectionListHeading(this))
    , m_bar(new ThinScrollBar(this))
    , m_focus(new SectionListFocus(this, m_body))
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    // Whoever finds the row hidden that had the focus goes up from there: to the current row.
    m_body->setFocusProxy(this);
    m_heading->hide();
    m_bar->setSingleStep(Metrics::wheelLine);
    new FingerScroll(this, m_bar);

    connect(m_body, &SectionListBody::moved, this, &SectionList::followBody);
    connect(m_body, &SectionListBody::rowMade, this, [this](SectionListRow *row) {
        connect(row, &SectionListRow::activated, this, [this, row] {
            if (const auto index = m_body->rows().rowOf(row))
                Q_EMIT rowActivated(*index);
        });
    });
    connect(m_bar, &QScrollBar::valueChanged, this, &SectionList::followBar);
    connect(m_bar, &QScrollBar::actionTriggered, this, [this](int action) {
        // A page less what the heading stuck to the top would cover of it.
        const int covered = m_body->flow().offsets.headingHeight();
        if (action == QScrollBar::SliderPageStepAdd)
            m_bar->setSliderPosition(m_bar->sliderPosition() - covered);
        else if (action == QScrollBar::SliderPageStepSub)
            m_bar->setSliderPosition(m_bar->sliderPosition() + covered);
    });
    connect(m_bar, &QScrollBar::sliderReleased, this, &SectionList::followBody);
}

SectionList::~SectionList()
{
    // It would follow the focus out of rows that outlive the body that it asks.
    delete m_focus;
}

void SectionList::setContent(SectionListContent content)
{
    QHash<QString, int> former;
    for (const auto &[row, bound] : m_body->rows().bound())
        former.insert(bound.id, row);
    const auto current = m_focus->currentRow();
    const auto currentId = m_focus->currentId();
    if (current)
        former.insert(*currentId, *current);
    const auto found = foundRows(content, former);
    const int count = content.rowCount();
    const bool focused = m_focus->isWithin();
    const bool waiting = hasFocus(); // it was empty
    ++m_contentNumber;

    auto next = current;
    if (current)
        next = found.value(*currentId, std::min(*current, count - 1));
    if (count == 0)
        next.reset();
    m_body->setContent(std::move(content), found, focused ? next : std::nullopt);
    m_focus->setCurrent(next);

    setFocusPolicy(count > 0 ? Qt::TabFocus : Qt::NoFocus);
    if (waiting)
        m_focus->enter(Qt::OtherFocusReason);
}

void SectionList::refreshRows()
{
    m_body->refresh();
}

void SectionList::setSelectedRow(const std::optional<QString> &id)
{
    m_body->setSelected(id);
}

void SectionList::focusRow(const QString &id)
{
    if (rowCount() == 0)
        return;
    const auto row = m_focus->currentRow();
    const auto found = foundRows(m_body->content(), {{id, row.value_or(0)}});
    if (!found.isEmpty())
        m_focus->give(found.value(id));
    else
        m_focus->enter(Qt::OtherFocusReason);
}

int SectionList::rowCount() const
{
    return m_body->rowCount();
}

std::optional<int> SectionList::currentRow() const
{
    return m_focus->currentRow();
}

SectionListRow *SectionList::widgetOf(int row) const
{
    return m_body->rows().find(row);
}

std::optional<int> SectionList::rowAt(QPoint point) const
{
    const bool covered = m_heading->isVisibleTo(this) && m_heading->geometry().contains(point);
    return covered ? std::nullopt : m_body->rowAt(m_body->mapFrom(this, point));
}

void SectionList::showRow(int row)
{
    if (row >= 0 && row < rowCount())
        m_body->showRow(row);
}

void SectionList::changeEvent(QEvent *event)
{
    const bool changesHeights =
        event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange;
    if (changesHeights && !m_refreshing) {
        // The rows hear of it after the list: they are measured when all have.
        m_refreshing = true;
        const auto refresh = [this] {
            m_refreshing = false;
            refreshRows();
        };
        QMetaObject::invokeMethod(this, refresh, Qt::QueuedConnection);
    }
    QWidget::changeEvent(event);
}

void SectionList::focusInEvent(QFocusEvent *event)
{
    m_focus->enter(event->reason());
}

bool SectionList::focusNextPrevChild(bool next)
{
    if (isVisible() && m_focus->isWithin() && m_focus->step(next))
        return true;
    return m_focus->leave(next);
}

void SectionList::keyPressEvent(QKeyEvent *event)
{
    if (!m_focus->handleKey(event))
        QWidget::keyPressEvent(event);
}

void SectionList::paintEvent(QPaintEvent *event)
{
    QPainter(this).fillRect(event->rect(), surfaceColor(palette()));
}

void SectionList::resizeEvent(QResizeEvent *)
{
    m_body->setGeometry(Metrics::edge, 0, width() - Metrics::edge - Metrics::gutter,
                        height() - Metrics::edge);
    m_bar->setGeometry(width() - Metrics::gutter, 0, ThinScrollBar::gutter, height());
    followBody();
}

void SectionList::wheelEvent(QWheelEvent *event)
{
    if (event->angleDelta().y() == 0 && event->pixelDelta().y() == 0) {
        event->ignore();
        return;
    }
    const int way = m_wheel.pixels(*event);
    if (way != 0 && !m_bar->isSliderDown())
        m_body->scrollBy(way);
}

/// While the thumb is held, its range stands still: the hand and the list agree by proportion.
void SectionList::followBody()
{
    stickHeading();
    if (m_bar->isSliderDown())
        return;
    const QScopedValueRollback following(m_followingBody, true);
    const auto &flow = m_body->flow();
    m_bar->setPageStep(std::max(1, flow.viewHeight()));
    m_bar->setRange(0, flow.maximum());
    m_bar->setValue(flow.top());
}

void SectionList::followBar(int value)
{
    if (m_followingBody)
        return;
    const auto &flow = m_body->flow();
    if (!m_bar->isSliderDown())
        m_body->scrollBy(value - flow.top());
    else if (value == m_bar->maximum())
        m_body->scrollToEnd();
    else
        m_body->scrollTo(int(qint64(value) * flow.maximum() / m_bar->maximum()));
}

void SectionList::stickHeading()
{
    const auto &flow = m_body->flow();
    const auto &offsets = flow.offsets;
    const int section = rowCount() == 0 ? -1 : offsets.sectionOf(offsets.rowAt(flow.top()));
    const bool stuck = section >= 0 && offsets.headingTop(section) < flow.top();
    m_heading->setVisible(stuck);
    m_body->setCovered(0);
    if (!stuck)
        return;
    int top = 0;
    if (section + 1 < offsets.sectionCount())
        top = std::min(0, offsets.headingTop(section + 1) - flow.top() - offsets.headingHeight());
    m_heading->setTitle(m_body->content().sections[section].title);
    m_heading->setGeometry(0, top, width(), offsets.headingHeight());
    m_body->setCovered(m_heading->geometry().bottom() + 1);
}
