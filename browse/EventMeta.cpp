#include "browse/EventMeta.h"

#include "browse/EventTexts.h"
#include "browse/FairShare.h"
#include "controls/SymbolLabel.h"
#include "look/Fonts.h"

#include <algorithm>
#include <numeric>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int spacing = 12;

} // namespace

EventMeta::EventMeta(QWidget *parent)
    : QWidget(parent)
    , m_date(new SymbolLabel(Symbol::Calendar, {}, this))
    , m_time(new SymbolLabel(Symbol::Clock, {}, this))
    , m_place(new SymbolLabel(Symbol::MapPin, {}, this))
{
    for (SymbolLabel *label : {m_date, m_time, m_place})
        label->setFont(appFont(12));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void EventMeta::setEvent(const Event &event, const Calendar &calendar)
{
    const auto show = [&](SymbolLabel *label, const QString &kind,
                          const std::optional<QString> &text) {
        label->setVisible(isPresent(text));
        label->setText(text.value_or(QString()));
        if (m_namesKinds)
            label->setAccessibleName(kind + u"\u00A0: "_s + text.value_or(QString()));
    };
    const std::optional<QString> date = shownDate(event, calendar);
    show(m_date, u"Date"_s, date);
    show(m_time, u"Heure"_s, event.heure_texte);
    show(m_place, u"Lieu"_s, event.lieu);
    m_spoken = whenAndWhere(date, event);
    updateGeometry();
    arrange();
}

void EventMeta::setSelectable()
{
    for (SymbolLabel *label : {m_date, m_time, m_place})
        label->setSelectable();
}

QSize EventMeta::sizeHint() const
{
    int width = 0;
    for (const SymbolLabel *label : shownLabels())
        width += label->naturalWidth() + (width > 0 ? spacing : 0);
    return {width, m_date->sizeHint().height()};
}

QSize EventMeta::minimumSizeHint() const
{
    return {0, sizeHint().height()};
}

void EventMeta::resizeEvent(QResizeEvent *)
{
    arrange();
}

QList<SymbolLabel *> EventMeta::shownLabels() const
{
    QList<SymbolLabel *> labels;
    for (SymbolLabel *label : {m_date, m_time, m_place}) {
        if (!label->isHidden())
            labels.append(label);
    }
    return labels;
}

void EventMeta::arrange()
{
    const QList<SymbolLabel *> labels = shownLabels();
    if (labels.isEmpty())
        return;

    const int room = width() - spacing * static_cast<int>(labels.size() - 1);
    QList<int> widths;
    for (const SymbolLabel *label : labels)
        widths.append(label->naturalWidth());
    // Date and time are what people look for: the place alone is cut while that is enough.
    const int whole = std::accumulate(widths.begin(), widths.end() - 1, 0);
    const int last = labels.last()->minimumSizeHint().width();
    if (labels.last() == m_place && whole + last <= room)
        widths.last() = std::min(widths.last(), room - whole);
    else
        widths = fairShare(widths, room);

    int x = 0;
    for (qsizetype i = 0; i < labels.size(); ++i) {
        labels[i]->setGeometry(x, 0, widths[i], height());
        x += widths[i] + spacing;
    }
}
