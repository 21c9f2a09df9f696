#include "walk/Portrait.h"

#include "support/MembersWindow.h"

#include <QPainter>
#include <QScrollBar>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString wordsOf(const QAccessible::State &state)
{
    QStringList words;
    const auto add = [&words](bool is, const QString &word) {
        if (is)
            words.append(word);
    };
    add(state.focused, u"focused"_s);
    add(state.focusable, u"focusable"_s);
    add(state.selected, u"selected"_s);
    add(state.selectable, u"selectable"_s);
    add(state.checked, u"checked"_s);
    add(state.disabled, u"disabled"_s);
    add(state.offscreen, u"offscreen"_s);
    add(state.expanded, u"expanded"_s);
    add(state.hasPopup, u"has-popup"_s);
    add(state.modal, u"modal"_s);
    add(state.readOnly, u"read-only"_s);
    return words.join(u' ');
}

void describe(QAccessibleInterface *item, QPoint origin, QStringList &lines, int depth = 0,
              bool isInView = true)
{
    const auto state = item ? item->state() : QAccessible::State();
    if (!item || state.invisible)
        return;
    const QRect rect = item->rect().translated(-origin);
    // Where a row beyond the view stands goes by the heights of the rows seen so far.
    isInView = isInView && !state.offscreen;
    lines.append(u"%1%2 \"%3\" (%4) [%5] %6 {%7}"_s.arg(
        QString(depth, QLatin1Char(' ')), QString::number(item->role()),
        item->text(QAccessible::Name), item->text(QAccessible::Description),
        item->text(QAccessible::Value), wordsOf(state),
        isInView ? u"%1,%2 %3x%4"_s.arg(rect.x()).arg(rect.y()).arg(rect.width()).arg(rect.height())
                 : QString()));
    for (int i = 0; i < item->childCount(); ++i)
        describe(item->child(i), origin, lines, depth + 1, isInView);
}

QString whereDifferent(const QImage &one, const QImage &other)
{
    if (one.size() != other.size())
        return u"in size"_s;
    QRect where;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            if (one.pixel(x, y) != other.pixel(x, y))
                where |= QRect(x, y, 1, 1);
        }
    }
    return where.isNull() ? QString()
                          : u"from %1,%2 to %3,%4"_s.arg(where.left())
                                .arg(where.top())
                                .arg(where.right())
                                .arg(where.bottom());
}

quint64 digest(const QImage &image)
{
    // Without a seed, which would be each process's own.
    const auto size = quint64(image.width()) << 32 | quint64(image.height());
    return image.isNull() ? 0 : size ^ qHashBits(image.constBits(), size_t(image.sizeInBytes()));
}

} // namespace

Pictures picturesOf(ContentView *window)
{
    Pictures pictures;
    pictures.window = window->grab().toImage().convertToFormat(QImage::Format_RGB32);
    if (SectionList *list = WindowTest::shownList(window)) {
        const QRect bar(list->scrollBar()->mapTo(window, QPoint()), list->scrollBar()->size());
        QPainter(&pictures.window).fillRect(bar, Qt::white);
    }
    if (Popover *menu = MembersWindow::accountMenu(window))
        pictures.menu = menu->grab().toImage().convertToFormat(QImage::Format_ARGB32);
    return pictures;
}

Portrait portraitOf(ContentView *window, const Pictures &pictures)
{
    Portrait portrait;
    portrait.pixels = 3 * digest(pictures.menu) + digest(pictures.window);
    const QPoint origin = window->mapToGlobal(QPoint());
    describe(QAccessible::queryAccessibleInterface(window), origin, portrait.tree);
    if (Popover *menu = MembersWindow::accountMenu(window))
        describe(QAccessible::queryAccessibleInterface(menu), origin, portrait.tree);
    return portrait;
}

QString difference(const Portrait &one, const Portrait &other)
{
    for (qsizetype i = 0; i < std::max(one.tree.size(), other.tree.size()); ++i) {
        const QString left = one.tree.value(i);
        const QString right = other.tree.value(i);
        if (left != right)
            return u"says\n  "_s + left + u"\nand, fresh,\n  "_s + right;
    }
    return one.pixels == other.pixels ? QString() : u"paints differently"_s;
}

QString difference(const Pictures &one, const Pictures &other)
{
    const QString window = whereDifferent(one.window, other.window);
    return window.isEmpty() ? whereDifferent(one.menu, other.menu) : window;
}

QDataStream &operator<<(QDataStream &stream, const Pictures &pictures)
{
    return stream << pictures.window << pictures.menu;
}

QDataStream &operator>>(QDataStream &stream, Pictures &pictures)
{
    return stream >> pictures.window >> pictures.menu;
}

QDataStream &operator<<(QDataStream &stream, const Portrait &portrait)
{
    return stream << portrait.pixels << portrait.tree;
}

QDataStream &operator>>(QDataStream &stream, Portrait &portrait)
{
    return stream >> portrait.pixels >> portrait.tree;
}
