#include "walk/Finding.h"

#include "controls/ErrorText.h"
#include "look/KeyboardFocus.h"
#include "support/MembersWindow.h"
#include "walk/Rows.h"

#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QWindow>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QList<QWidget *> alike(ContentView *window, const QString &className, const QString &name)
{
    QList<QWidget *> found;
    const auto widgets = window->findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        // What is in the list is found by its row; the menu is a window of its own.
        bool isInList = widget->window() != window;
        for (auto *above = widget->parentWidget(); above; above = above->parentWidget())
            isInList |= qobject_cast<SectionList *>(above) != nullptr;
        if (!isInList && widget->isVisible() && widget->accessibleName() == name
            && QString::fromLatin1(widget->metaObject()->className()) == className)
            found.append(widget);
    }
    return found;
}

SectionListRow *rowOf(QWidget *widget)
{
    for (; widget; widget = widget->parentWidget()) {
        if (auto *row = qobject_cast<SectionListRow *>(widget))
            return row;
    }
    return nullptr;
}

QScrollBar *sheetBar(ContentView *window)
{
    const Sheet *sheet = MembersWindow::sheet(window);
    auto *area = sheet ? sheet->findChild<QScrollArea *>() : nullptr;
    return area ? area->verticalScrollBar() : nullptr;
}

void lookAtPlace(ContentView *window, WalkState &state)
{
    state.placeRow.clear();
    state.placeTop = 0;
    SectionList *list = WindowTest::shownList(window);
    for (int y = 0; list && y < list->height(); ++y) {
        const auto row = list->rowAt({50, y});
        const QWidget *widget = row ? list->widgetOf(*row) : nullptr;
        if (!widget)
            continue;
        state.placeRow = widget->accessibleName();
        state.placeTop = widget->mapTo(list, QPoint()).y();
        return;
    }
}

void giveFocus(QWidget *widget, bool ring)
{
    if (widget->hasFocus() && Finding::showsRing(widget) == ring)
        return;
    widget->window()->setFocus();
    // A field always shows its ring, and the tab key would select its text.
    const bool isByTab = ring && !qobject_cast<QLineEdit *>(widget);
    widget->setFocus(isByTab ? Qt::TabFocusReason : Qt::MouseFocusReason);
}

void followFocus(ContentView *window, const WalkState &state)
{
    if (state.focusRow.isEmpty()) {
        const auto widgets = alike(window, state.focusClass, state.focusName);
        if (state.focusClass == QLatin1String("ContentView"))
            window->setFocus();
        else if (state.focusOrdinal < widgets.size())
            giveFocus(widgets.at(state.focusOrdinal), state.ring);
        return;
    }
    SectionList *list = WindowTest::shownList(window);
    if (!list)
        return;
    list->focusRow(Rows::idOf(state.focusRow));
    auto *row = rowOf(window->focusWidget());
    if (!row)
        return;
    if (state.focusStop == 0)
        giveFocus(row, state.ring);
    else
        giveFocus(row->buttons().at(state.focusStop - 1), state.ring);
}

void followPlace(ContentView *window, const WalkState &state)
{
    SectionList *list = WindowTest::shownList(window);
    if (!list || state.placeRow.isEmpty())
        return;
    const auto index = Finding::titles(window).indexOf(state.placeRow);
    if (index < 0)
        return;
    // By estimates at first, which every step corrects.
    for (int round = 0; round < 8; ++round) {
        const QWidget *widget = list->widgetOf(int(index));
        if (!widget) {
            list->showRow(int(index));
            continue;
        }
        const int off = widget->mapTo(list, QPoint()).y() - state.placeTop;
        if (off == 0)
            return;
        list->scrollBar()->setValue(list->scrollBar()->value() + off);
    }
}

} // namespace

QWidget *Finding::row(ContentView *window, const QString &title)
{
    SectionList *list = WindowTest::shownList(window);
    const auto index = list ? titles(window).indexOf(title) : -1;
    return index < 0 ? nullptr : list->widgetOf(int(index));
}

bool Finding::showsRing(const QWidget *focus)
{
    if (const auto *row = qobject_cast<const SectionListRow *>(focus))
        return row->showsFocus();
    const auto rings = focus->findChildren<KeyboardFocus *>(Qt::FindDirectChildrenOnly);
    return std::any_of(rings.begin(), rings.end(),
                       [](const KeyboardFocus *ring) { return ring->isVisible(); });
}

QStringList Finding::titles(ContentView *window)
{
    QStringList titles;
    SectionList *list = WindowTest::shownList(window);
    const auto *reader = list ? QAccessible::queryAccessibleInterface(list) : nullptr;
    for (int i = 0; reader && i < reader->childCount(); ++i) {
        const auto *item = reader->child(i);
        if (item && item->role() == QAccessible::ListItem)
            titles.append(item->text(QAccessible::Name));
    }
    return titles;
}

QString Finding::mark(const ContentView *window)
{
    const auto lists = window->findChildren<SectionList *>();
    for (SectionList *list : lists) {
        const auto *reader = QAccessible::queryAccessibleInterface(list);
        const int count = reader ? reader->childCount() : 0;
        // Behind the heading of its month, at either end of the list.
        for (const int at : {1, count - 1}) {
            const auto *item = at < count ? reader->child(at) : nullptr;
            const QString title = item ? item->text(QAccessible::Name) : QString();
            if (Rows::isMark(title))
                return title;
        }
    }
    return {};
}

QString Finding::failure(const ContentView *window)
{
    const auto texts = window->findChildren<ErrorText *>();
    for (const auto *text : texts) {
        const QWidget *above = text->parentWidget();
        while (above && !qobject_cast<const Sheet *>(above))
            above = above->parentWidget();
        if (!above)
            return text->text();
    }
    return {};
}

void Finding::point(ContentView *window, QPoint at)
{
    if (at.x() < 0)
        return;
    // The same place twice is no move.
    for (const QPoint place : {at + QPoint(1, 0), at}) {
        QCursor::setPos(window->mapToGlobal(place));
        QCoreApplication::processEvents();
    }
}

void Finding::type(ContentView *window, const QString &field, const QString &text)
{
    const Sheet *form = MembersWindow::sheet(window);
    QLineEdit *edit = form ? MembersWindow::field(form, field) : nullptr;
    if (!edit)
        return;
    edit->setFocus(Qt::MouseFocusReason);
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text);
}

void Finding::look(ContentView *window, WalkState &state)
{
    lookAtPlace(window, state);
    const QScrollBar *bar = sheetBar(window);
    state.sheetScroll = bar ? bar->value() : 0;

    state.focusRow.clear();
    state.focusClass.clear();
    state.focusName.clear();
    state.focusStop = 0;
    state.focusOrdinal = 0;
    state.ring = false;
    QWidget *focus = window->focusWidget();
    if (!focus)
        return;
    state.ring = showsRing(focus);
    if (auto *row = rowOf(focus)) {
        state.focusRow = row->accessibleName();
        state.focusStop = row == focus ? 0 : 1 + int(row->buttons().indexOf(focus));
        return;
    }
    state.focusClass = QString::fromLatin1(focus->metaObject()->className());
    state.focusName = focus->accessibleName();
    state.focusOrdinal =
        std::max(0, int(alike(window, state.focusClass, state.focusName).indexOf(focus)));
}

void Finding::follow(ContentView *window, const WalkState &state)
{
    followFocus(window, state);
    followPlace(window, state);
    if (QScrollBar *bar = sheetBar(window))
        bar->setValue(state.sheetScroll);
    point(window, state.pointer);
}
