#include "browse/Rehearsal.h"

#include "browse/EventOrder.h"
#include "browse/EventRow.h"
#include "platform/Calendar.h"
#include "sectionlist/SectionListHeading.h"

#include <QImage>
#include <QPainter>
#include <QWidget>

#include <array>

namespace {

/// What village events are written with, the most usual first.
constexpr std::array<QStringView, 3> usualCharacters{
    u"e",
    u"abcdefghijklmnopqrstuvwxyz éèàêç ’ 0123456789 , . : -",
    u"ABCDEFGHIJKLMNOPQRSTUVWXYZ É âëîïôùûœ ; ! ? ' « » ( ) / & + – … € @",
};

Event usualEvent(Instant start, QStringView characters)
{
    Event event;
    event.titre = characters.toString();
    event.description = event.titre;
    event.lieu = event.titre;
    event.tags = QStringList{event.titre.left(26)};
    event.starts_at = start;
    return event;
}

/// Opaque, as the window is: on glass other glyphs would be drawn.
QImage paperFor(const QWidget &window, QSize size)
{
    QImage paper(size * window.devicePixelRatioF(), QImage::Format_RGB32);
    paper.setDevicePixelRatio(window.devicePixelRatioF());
    return paper;
}

void rehearseRow(const QWidget &window, QStringView characters)
{
    const Calendar calendar = Calendar::current();
    EventRow row({}, {});
    row.setEvent(usualEvent(calendar.startOfDay(Instant::now()), characters), true, calendar);
    row.resize(window.width(), row.heightFor(window.width()));
    QImage paper = paperFor(window, row.size());
    row.render(&paper);
}

void rehearseHeading(const QWidget &window)
{
    const Calendar calendar = Calendar::current();
    const auto months = groupedEvents({calendar.startOfDay(Instant::now())}, 0, 1, true, calendar);
    const QRect line(0, 0, window.width(), SectionListHeading::height());
    QImage paper = paperFor(window, line.size());
    QPainter painter(&paper);
    SectionListHeading::paintTitle(
        painter, line, months.first().title + usualCharacters[1].toString(), window.palette());
}

void rehearseTabs(const QWidget &window, QWidget &tabs)
{
    QImage paper = paperFor(window, tabs.sizeHint());
    tabs.render(&paper);
}

} // namespace

bool rehearseList(const QWidget &window, QWidget &tabs, int part)
{
    switch (part) {
    case 0:
        rehearseRow(window, usualCharacters[0]); // the faces and the symbols
        return true;
    case 1:
        rehearseTabs(window, tabs);
        rehearseHeading(window);
        return true;
    case 2:
        rehearseRow(window, usualCharacters[1]);
        return true;
    default:
        rehearseRow(window, usualCharacters[2]);
        return false;
    }
}
