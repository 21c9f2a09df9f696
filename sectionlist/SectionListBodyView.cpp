// What of a SectionListBody is seen: widgets in their places, pixels moved, states of rows.

#include "sectionlist/SectionListBody.h"

#include "controls/Pane.h"
#include "look/Colors.h"
#include "sectionlist/SectionListHeading.h"
#include "sectionlist/SectionListMetrics.h"

#include <QApplication>
#include <QHoverEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QTimer>
#include <QWindow>

#include <optional>

namespace Metrics = SectionListMetrics;

void SectionListBody::setSelected(const std::optional<QString> &id)
{
    m_selected = id;
    updateStates();
}

void SectionListBody::setRingShown(bool shown)
{
    m_ringShown = shown;
    updateStates();
}

void SectionListBody::updateStates()
{
    const auto hovered = m_pointer ? rowAt(*m_pointer) : std::nullopt;
    const auto &offsets = m_flow.offsets;
    for (const auto &[row, bound] : m_rows.bound()) {
        SectionListRow::State state;
        state.hairline = offsets.firstRow(offsets.sectionOf(row)) != row;
        state.hovered = row == hovered;
        state.selected = bound.id == m_selected;
        state.focusRing = m_ringShown && bound.widget->hasFocus();
        m_unpainted |= bound.widget->setState(state);
    }
}

bool SectionListBody::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
        m_pointer = static_cast<QHoverEvent *>(event)->position().toPoint();
        updateStates();
        return true; // QWidget would repaint the whole list
    case QEvent::HoverLeave:
        m_pointer.reset();
        updateStates();
        return true;
    default:
        return QWidget::event(event);
    }
}

void SectionListBody::paintEvent(QPaintEvent *event)
{
    m_unpainted = false;
    QPainter painter(this);
    painter.fillRect(event->rect(), surfaceColor(palette()));
    const auto &offsets = m_flow.offsets;
    if (offsets.rowCount() == 0)
        return;
    const int first = offsets.sectionOf(offsets.rowAt(m_flow.top() + event->rect().top()));
    for (int section = first; section < offsets.sectionCount(); ++section) {
        const QRect rect(0, offsets.headingTop(section) - m_flow.top(), width(),
                         offsets.headingHeight());
        if (rect.top() > event->rect().bottom())
            break;
        if (rect.intersects(event->rect()))
            SectionListHeading::paintTitle(painter, rect, m_content.sections[section].title,
                                           palette());
    }
}

void SectionListBody::resizeEvent(QResizeEvent *event)
{
    m_hasSize = true;
    const bool sameWidth = event->oldSize().width() == width();
    const auto kept = m_flow.place();
    m_flow.setViewHeight(height());
    if (sameWidth) {
        layOut();
        return;
    }
    m_flow.offsets.forgetHeights(m_flow.offsets.headingHeight());
    layOut(Repaint::Everything, kept);
}

/// Pixels are moved only where nothing waits to be painted: two steps within one frame would
/// repaint everything, if the first one's strip did not come before the second.
void SectionListBody::paintWhatWaits()
{
    if (m_unpainted && isVisible())
        repaint(0, 0, 1, 1); // paints all that waits
}

void SectionListBody::layOut(Repaint repaint, const std::optional<Place> &kept)
{
    // Rows would be made and measured in vain.
    if (m_filling || !m_hasSize)
        return;
    if (repaint == Repaint::WhatMoves)
        paintWhatWaits();
    {
        const QScopedValueRollback filling(m_filling, true);
        const auto measure = this->measure();
        if (kept)
            m_flow.restore(*kept, measure);
        m_rows.releaseOutside(m_flow.range(Metrics::margin), m_pinned);
        const auto range = m_flow.settle(Metrics::margin, measure);
        for (int row = range.first; row <= range.last; ++row)
            bind(row);
        if (m_pinned)
            bind(*m_pinned);
        m_rows.releaseOutside(range, m_pinned);
        placeRows(repaint);
        handOnFocus();
        m_rows.hideSpare();
    }
    tellPointer();
    updateStates();
    Q_EMIT moved();
}

void SectionListBody::placeRows(Repaint repaint)
{
    const auto shift = repaint == Repaint::WhatMoves ? shiftOnScreen() : std::nullopt;
    m_unpainted |= shift != 0;
    for (auto &[row, bound] : m_rows.bound()) {
        const bool isNew = !bound.placed;
        bound.placed = isNear(row);
        QRect rect = rectOf(row);
        if (!bound.placed)
            rect.moveBottom(-1); // it only has the focus
        if (!shift || isNew || !bound.placed)
            bound.widget->setGeometry(rect.translated(0, -shift.value_or(0)));
        bound.widget->show();
    }
    if (!shift)
        update();
    else if (*shift != 0)
        moveOnScreen(*shift);
}

/// A widget that shows no row any more lets go of the focus before it is hidden: to the row that
/// was pinned in its place, or to the list when it is empty.
void SectionListBody::handOnFocus()
{
    const auto *focus = window()->focusWidget();
    if (!focus || !isAncestorOf(focus) || m_rows.rowOf(focus))
        return;
    auto *heir = m_pinned ? m_rows.find(*m_pinned) : parentWidget();
    heir->setFocus(Qt::OtherFocusReason);
}

/// What widgets above overlap, here or anywhere up to the window, cannot be moved: Qt repaints all
/// of a widget that is overlapped in part. So the rows are moved without a word, and the pixels
/// between the heading at the top and the pane's corners at the bottom by themselves.
void SectionListBody::moveOnScreen(int shift)
{
    setAttribute(Qt::WA_UpdatesDisabled);
    scroll(0, shift);
    setAttribute(Qt::WA_UpdatesDisabled, false);

    const QRect clear = rect().adjusted(0, m_covered, 0, -Pane::radius);
    scroll(0, shift, clear);
    update(QRegion(rect()) - clear);
}

/// By how much the pixels of everything that stays in view move; none when they do not all move
/// alike, or nothing stays.
std::optional<int> SectionListBody::shiftOnScreen() const
{
    std::optional<int> shift;
    for (const auto &[row, bound] : m_rows.bound()) {
        if (!bound.placed || !isNear(row))
            continue;
        const QRect now = rectOf(row);
        const QRect before = bound.widget->geometry();
        const int moved = now.top() - before.top();
        if (now.size() != before.size() || moved != shift.value_or(moved))
            return {};
        shift = moved;
    }
    return shift && std::abs(*shift) < height() ? shift : std::nullopt;
}

bool SectionListBody::isNear(int row) const
{
    const auto near = m_flow.range(Metrics::margin);
    return row >= near.first && row <= near.last;
}

QRect SectionListBody::rectOf(int row) const
{
    return {0, m_flow.offsets.top(row) - m_flow.top(), width(), m_flow.offsets.height(row)};
}

/// Rows that move under a resting pointer must know: buttons hear of it by a move to where the
/// pointer is already.
void SectionListBody::tellPointer()
{
    if (!m_pointer || m_tellingPointer)
        return;
    m_tellingPointer = true;
    QTimer::singleShot(0, this, [this] {
        m_tellingPointer = false;
        auto *handle = window()->windowHandle();
        const bool isFree = QApplication::mouseButtons() == Qt::NoButton
            && !QApplication::activeModalWidget() && !QApplication::activePopupWidget();
        if (!m_pointer || !handle || !isFree)
            return;
        const QPointF local = mapTo(window(), *m_pointer);
        QMouseEvent move(QEvent::MouseMove, local, local, mapToGlobal(QPointF(*m_pointer)),
                         Qt::NoButton, Qt::NoButton, QApplication::keyboardModifiers());
        QApplication::sendEvent(handle, &move);
    });
}
