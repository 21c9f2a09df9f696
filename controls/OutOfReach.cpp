#include "controls/OutOfReach.h"

#include "look/Accessibility.h"
#include "look/Reach.h"

#include <QWidget>

#include <utility>

OutOfReach::OutOfReach(QWidget *sheet, QWidget *focusBefore)
    : m_sheet(sheet)
    , m_window(sheet->window())
    , m_focusBefore(focusBefore)
{
    setAccessibleModal(sheet, true);
    const auto children = m_window->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget *child : children) {
        if (child == sheet || child->isWindow() || child->testAttribute(Qt::WA_ForceDisabled))
            continue;
        setOutOfReach(child, true);
        m_below.append(child);
    }
}

OutOfReach::~OutOfReach()
{
    if (!m_window)
        return; // it goes, and all that lies in it
    setAccessibleModal(m_sheet, false);
    for (const auto &widget : std::as_const(m_below)) {
        if (widget)
            setOutOfReach(widget, false);
    }
    const QWidget *focus = m_window->focusWidget();
    if (!focus || focus == m_sheet || m_sheet->isAncestorOf(focus))
        giveBackFocus();
}

void OutOfReach::giveBackFocus() const
{
    QWidget *widget = m_focusBefore;
    while (widget && !widget->isWindow() && !(widget->isVisibleTo(m_window) && widget->isEnabled()))
        widget = widget->parentWidget();
    if (widget && widget == m_focusBefore)
        widget->setFocus(Qt::PopupFocusReason); // its ring shows if it did
    else
        (widget ? widget : m_window.data())->setFocus(Qt::OtherFocusReason);
}
