#include "browse/EventRow.h"

#include "browse/EventMeta.h"
#include "browse/EventTexts.h"
#include "browse/TagChips.h"
#include "controls/IconButton.h"
#include "controls/TextLabel.h"
#include "look/Fonts.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int padding = 6; ///< above and below
constexpr int spacing = 6; ///< between lines
constexpr int gap = 12; ///< between the texts and the buttons
/// The buttons' targets are larger than their icons; the last icon ends on the text column's edge.
constexpr int overhang = 4;

} // namespace

EventRow::EventRow(Action onEdit, Action onDelete, QWidget *parent)
    : SectionListRow(parent)
    , m_title(new TextLabel({}, appFont(17, QFont::DemiBold), primaryText, this))
    , m_description(new TextLabel({}, appFont(13), secondaryText, this))
    , m_meta(new EventMeta(this))
    , m_chips(new TagChips(this))
    , m_edit(new IconButton(Symbol::Pencil, u"Modifier"_s, secondaryText, this))
    , m_delete(new IconButton(Symbol::Trash, u"Supprimer"_s, red, this))
{
    m_description->setMaximumLines(3);
    connect(m_edit, &IconButton::clicked, this,
            [this, act = std::move(onEdit)] { act(Event(m_event)); });
    connect(m_delete, &IconButton::clicked, this,
            [this, act = std::move(onDelete)] { act(Event(m_event)); });
}

void EventRow::setEvent(const Event &event, bool isOwner, const Calendar &calendar)
{
    m_event = event;
    m_title->setText(event.titre);
    m_description->setText(event.description.value_or(QString()));
    m_description->setVisible(isPresent(event.description));
    m_meta->setEvent(event, calendar);
    m_chips->setTags(event.tags.value_or(QStringList()));
    m_chips->setVisible(event.tags && !event.tags->isEmpty());
    m_edit->setVisible(isOwner);
    m_delete->setVisible(isOwner);

    setAccessibleName(event.titre);
    QStringList spoken = {m_meta->spoken(), m_chips->spoken()};
    spoken.removeAll(QString());
    setAccessibleDescription(spoken.join(u", "_s));
    arrange();
}

int EventRow::heightFor(int width) const
{
    const int text = textWidth(width);
    int height = padding + m_title->heightForWidth(text);
    if (!m_description->isHidden())
        height += spacing + m_description->heightForWidth(text);
    height += spacing + m_meta->sizeHint().height();
    if (!m_chips->isHidden())
        height += spacing + m_chips->sizeHint().height();
    return height + padding;
}

QList<QWidget *> EventRow::buttons() const
{
    return {m_edit, m_delete};
}

void EventRow::resizeEvent(QResizeEvent *event)
{
    SectionListRow::resizeEvent(event);
    arrange();
}

int EventRow::textWidth(int width) const
{
    if (m_edit->isHidden())
        return width;
    const int buttons = m_edit->sizeHint().width() + m_delete->sizeHint().width() - overhang;
    return std::max(0, width - buttons - gap);
}

void EventRow::arrange()
{
    const QRect content = contentRect();
    const int text = textWidth(content.width());
    int y = content.top() + padding;
    const auto place = [&](QWidget *line, int height) {
        line->setGeometry(content.left(), y, text, height);
        y += height + spacing;
    };
    place(m_title, m_title->heightForWidth(text));
    if (!m_description->isHidden())
        place(m_description, m_description->heightForWidth(text));
    place(m_meta, m_meta->sizeHint().height());
    if (!m_chips->isHidden())
        place(m_chips, m_chips->sizeHint().height());

    const QSize target = m_delete->sizeHint();
    const int right = content.right() + 1 + overhang;
    m_delete->setGeometry(right - target.width(), content.top() + padding, target.width(),
                          target.height());
    m_edit->setGeometry(right - 2 * target.width(), content.top() + padding, target.width(),
                        target.height());
}
