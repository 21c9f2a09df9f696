#include "sectionlist/SectionListFocus.h"

#include "look/KeyboardFocus.h"
#include "sectionlist/SectionListBody.h"
#include "sectionlist/SectionListRow.h"

#include <QApplication>
#include <QKeyEvent>

#include <algorithm>

SectionListFocus::SectionListFocus(QWidget *list, SectionListBody *body)
    : QObject(list)
    , m_list(list)
    , m_body(body)
{
    connect(body, &SectionListBody::rowMade, this, &SectionListFocus::watch);
}

bool SectionListFocus::isWithin() const
{
    const auto *focus = m_list->window()->focusWidget();
    return focus && m_body->isAncestorOf(focus);
}

void SectionListFocus::setCurrent(std::optional<int> row)
{
    m_row = row;
    m_id = row ? std::optional(m_body->content().rowId(*row)) : std::nullopt;
}

void SectionListFocus::give(int row, std::optional<bool> byKeyboard)
{
    m_body->pin(row);
    m_body->showRow(row);
    if (byKeyboard)
        m_body->setRingShown(*byKeyboard);
    if (auto *widget = m_body->rows().find(row))
        widget->setFocus(Qt::OtherFocusReason);
}

void SectionListFocus::enter(Qt::FocusReason reason)
{
    if (m_body->rowCount() == 0)
        return;
    const bool byTab = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason
        || reason == Qt::ShortcutFocusReason;
    give(startRow(), byTab ? std::optional(true) : std::nullopt);
    const auto all = stops();
    if (reason == Qt::BacktabFocusReason && all.size() > 1)
        giveStop(all.last(), false);
}

bool SectionListFocus::step(bool next)
{
    auto *focus = m_list->window()->focusWidget();
    const auto order = stops();
    const auto at = order.indexOf(focus);
    if (at < 0) // it was hidden, or disabled: its row is what is left
        giveToRowOf(focus);
    const auto to = at < 0 ? 0 : at + (next ? 1 : -1);
    if (at >= 0 && (to < 0 || to >= order.size()))
        return false;
    if (at >= 0) {
        m_body->showRow(*m_row);
        giveStop(order[to], next);
    }
    return true;
}

bool SectionListFocus::handleKey(QKeyEvent *event)
{
    if ((event->modifiers() & ~(Qt::KeypadModifier | Qt::ControlModifier)) != 0
        || m_body->rowCount() == 0)
        return false;
    const int last = m_body->rowCount() - 1;
    const int row = startRow();
    switch (event->key()) {
    case Qt::Key_Up:
        give(std::max(row - 1, 0), true);
        return true;
    case Qt::Key_Down:
        give(std::min(row + 1, last), true);
        return true;
    case Qt::Key_PageUp:
        movePage(-1);
        return true;
    case Qt::Key_PageDown:
        movePage(1);
        return true;
    case Qt::Key_Home:
        m_body->scrollTo(0);
        give(0, true);
        return true;
    case Qt::Key_End:
        m_body->scrollToEnd();
        give(last, true);
        return true;
    case Qt::Key_Left:
    case Qt::Key_Right:
        return stepAside((event->key() == Qt::Key_Right) == m_list->isLeftToRight());
    default:
        return false;
    }
}

bool SectionListFocus::leave(bool next)
{
    const auto after = [next](QWidget *widget) {
        return next ? widget->nextInFocusChain() : widget->previousInFocusChain();
    };
    for (auto *to = after(m_list); to != m_list; to = after(to)) {
        const bool takesTab = (to->focusPolicy() & Qt::TabFocus) != 0;
        if (!takesTab || m_list->isAncestorOf(to) || to->window() != m_list->window()
            || !to->isEnabled() || !to->isVisibleTo(m_list->window()))
            continue;
        to->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
        return true;
    }
    return false;
}

bool SectionListFocus::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::FocusIn:
        entered(watched, static_cast<QFocusEvent *>(event)->reason());
        break;
    case QEvent::FocusOut:
        // A window that goes to the back, or a menu, leaves nothing: the row is kept.
        if (QApplication::focusWidget() && !isWithin())
            m_body->pin({});
        m_body->updateStates();
        break;
    case QEvent::MouseButtonPress:
        m_body->setRingShown(false);
        break;
    case QEvent::KeyPress:
        // Buttons would take the arrows for themselves.
        return !qobject_cast<SectionListRow *>(watched)
            && handleKey(static_cast<QKeyEvent *>(event));
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void SectionListFocus::watch(SectionListRow *row)
{
    row->installEventFilter(this);
    const auto buttons = row->buttons();
    for (auto *button : buttons) {
        button->setFocusPolicy(Qt::ClickFocus); // the tab key's way is the list's
        button->installEventFilter(this);
    }
}

void SectionListFocus::entered(QObject *widget, Qt::FocusReason reason)
{
    const auto row = m_body->rows().rowOf(widget);
    if (!row)
        return;
    setCurrent(row);
    m_body->pin(row);
    if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason)
        m_body->setRingShown(true);
    m_body->updateStates();
}

void SectionListFocus::giveToRowOf(QWidget *widget)
{
    const auto row = m_body->rows().rowOf(widget);
    if (auto *home = row ? m_body->rows().find(*row) : nullptr)
        home->setFocus(Qt::OtherFocusReason);
}

QList<QWidget *> SectionListFocus::stops() const
{
    auto *row = m_row ? m_body->rows().find(*m_row) : nullptr;
    if (!row)
        return {};
    QList<QWidget *> stops{row};
    const auto buttons = row->buttons();
    for (auto *button : buttons) {
        if (button->isVisibleTo(row) && button->isEnabled())
            stops.append(button);
    }
    return stops;
}

void SectionListFocus::giveStop(QWidget *stop, bool next)
{
    m_body->setRingShown(true);
    stop->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
}

/// The arrows walk along the row and stop at its ends.
bool SectionListFocus::stepAside(bool next)
{
    const auto order = stops();
    const auto to = order.indexOf(m_list->window()->focusWidget()) + (next ? 1 : -1);
    if (to >= 0 && to < order.size())
        giveStop(order[to], next);
    return true;
}

/// Where the keyboard begins: at the current row, else at the first one in view.
int SectionListFocus::startRow() const
{
    return m_row.value_or(m_body->flow().place().row);
}

void SectionListFocus::movePage(int direction)
{
    const auto &flow = m_body->flow();
    const auto &offsets = flow.offsets;
    const int row = startRow();
    const int heading = offsets.headingHeight();
    const int page = std::max(flow.viewHeight() - heading, heading);
    const int middle = (offsets.top(row) + offsets.bottom(row)) / 2 - flow.top();
    const int eye = std::clamp(middle, std::min(heading, flow.viewHeight()), flow.viewHeight());
    m_body->scrollBy(direction * page);
    const bool atEnd = direction > 0 ? flow.top() == flow.maximum() : flow.top() == 0;
    const int last = offsets.rowCount() - 1;
    int to = offsets.rowAt(flow.top() + eye);
    // A row cut off by the view's end would scroll on, past what was not read yet.
    const bool cutOff = direction > 0 ? offsets.bottom(to) > flow.top() + flow.viewHeight()
                                      : offsets.top(to) < flow.top() + heading;
    if (cutOff)
        to -= direction;
    if (atEnd)
        to = direction > 0 ? last : 0;
    else if ((to - row) * direction <= 0)
        to = row + direction;
    give(std::clamp(to, 0, last), true);
}
