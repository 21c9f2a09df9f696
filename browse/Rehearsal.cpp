#include "browse/Rehearsal.h"

#include "browse/EventOrder.h"
#include "browse/EventRow.h"
#include "platform/Calendar.h"
#include "sectionlist/SectionListHeading.h"

#include <QImage>
#include <QPainter>
#include <QWidget>

namespace {

/// What village events are written with, in words, so that a few lines are enough for it.
constexpr QStringView usualCharacters =
    u"abcdefghijklmnopqrstuvwxyz àâçéèêëîïôùûœ ABCDEFGHIJKLMNOPQRSTUVWXYZ É 0123456789 "
    "., ; : ! ? ’ ' « » ( ) / & + - – … € @";

Event usualEvent(Instant start)
{
    Event event;
    event.titre = usualCharacters.toString();
    event.description = event.titre;
    event.lieu = event.titre;
    event.tags = QStringList{event.titre.left(26)};
    event.starts_at = start;
    return event;
}

} // namespace

void rehearseList(const QWidget &window)
{
    const Calendar calendar = Calendar::current();
    const Instant start = calendar.startOfDay(Instant::now());

    EventRow row({}, {});
    row.setEvent(usualEvent(start), true, calendar);
    row.resize(window.width(), row.heightFor(window.width()));
    // Opaque, as the window is: on glass other glyphs would be drawn.
    QImage paper(row.size() * window.devicePixelRatioF(), QImage::Format_RGB32);
    paper.setDevicePixelRatio(window.devicePixelRatioF());
    row.render(&paper);

    QPainter painter(&paper);
    const QList<EventGroup> months = groupedEvents({start}, 0, 1, true, calendar);
    SectionListHeading::paintTitle(painter, {0, 0, window.width(), SectionListHeading::height()},
                                   months.first().title + usualCharacters.toString(),
                                   window.palette());
}
