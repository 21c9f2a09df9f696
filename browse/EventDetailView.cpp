#include "browse/EventDetailView.h"

#include "app/ButtonStyles.h"
#include "browse/EventMeta.h"
#include "browse/EventTexts.h"
#include "browse/TagChips.h"
#include "controls/LinkLabel.h"
#include "controls/SymbolLabel.h"
#include "controls/TextLabel.h"
#include "look/Accessibility.h"
#include "look/Fonts.h"
#include "platform/Address.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int cardWidth = 480;
constexpr int padding = 16;
constexpr int spacing = 12;
constexpr int leastHeight = 320; ///< of what scrolls

SymbolLabel *makeWrappingLabel(Symbol symbol, const QString &text, QWidget *parent)
{
    auto *label = new SymbolLabel(symbol, text, parent);
    label->setFont(appFont(12));
    label->setWrapping(true);
    label->setSelectable();
    return label;
}

QWidget *makeBody(const Event &event, const Calendar &calendar)
{
    auto *body = new QWidget;
    auto *column = new QVBoxLayout(body);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(spacing);

    auto *title = new TextLabel(event.titre, appFont(22, QFont::DemiBold), primaryText, body);
    setAccessibleRole(title, QAccessible::Heading);
    title->setSelectable();
    column->addWidget(title);
    if (isPresent(event.description)) {
        auto *description = new TextLabel(*event.description, appFont(13), secondaryText, body);
        description->setSelectable();
        column->addWidget(description);
    }
    auto *meta = new EventMeta(body);
    meta->setNamesKinds(true);
    meta->setEvent(event, calendar);
    meta->setSelectable();
    column->addWidget(meta);
    if (isPresent(event.organise_par)) {
        column->addWidget(
            makeWrappingLabel(Symbol::People, u"Organisé par "_s + *event.organise_par, body));
    }
    if (isPresent(event.contact_email))
        column->addWidget(makeWrappingLabel(Symbol::Envelope, *event.contact_email, body));
    if (isPresent(event.link) && formsLink(*event.link)) {
        column->addWidget(new LinkLabel(u"Ouvrir le lien"_s, QUrl(*event.link), body), 0,
                          Qt::AlignLeft);
    }
    if (event.tags && !event.tags->isEmpty()) {
        auto *chips = new TagChips(body);
        chips->setTags(*event.tags);
        column->addWidget(chips);
    }
    column->addStretch();
    return body;
}

} // namespace

EventDetailView::EventDetailView(const Event &event, const Calendar &calendar, QWidget *over)
    : Sheet(cardWidth, over)
{
    auto *footer = new QWidget;
    auto *close = new SecondaryButton(u"Fermer"_s, footer);
    connect(close, &QPushButton::clicked, this, &QWidget::close);

    auto *row = new QHBoxLayout(footer);
    row->setContentsMargins(padding, 10, padding, 10);
    row->addStretch();
    row->addWidget(close);

    setAccessibleName(event.titre);
    setAccessibleDescription(whenAndWhere(shownDate(event, calendar), event));
    setBody(makeBody(event, calendar), leastHeight);
    setFooter(footer);
    setFooterLine(true);
    const auto buttons = findChildren<QAbstractButton *>();
    for (QAbstractButton *button : buttons)
        button->installEventFilter(this);
}

bool EventDetailView::eventFilter(QObject *watched, QEvent *event)
{
    // A button would take the arrows for ways to its neighbours.
    if (event->type() == QEvent::KeyPress && qobject_cast<QAbstractButton *>(watched)
        && scroll(static_cast<QKeyEvent *>(event)))
        return true;
    return Sheet::eventFilter(watched, event);
}
