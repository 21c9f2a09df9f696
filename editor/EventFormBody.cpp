#include "editor/EventFormBody.h"

#include "controls/DateField.h"
#include "controls/EndOfComposition.h"
#include "controls/PopupButton.h"
#include "controls/ShownText.h"
#include "controls/TextEditor.h"
#include "controls/TextField.h"
#include "controls/TextLabel.h"
#include "controls/TimeField.h"
#include "editor/PickedTime.h"
#include "editor/TagMenuView.h"
#include "look/Fonts.h"
#include "platform/Text.h"

#include <QHBoxLayout>
#include <QLocale>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int padding = 20;
constexpr int groupSpacing = 10;
constexpr int leastGroupSpacing = 8;
constexpr int headingSpacing = 9; // the heading's line is a pixel higher than its letters
constexpr int captionSpacing = 6; ///< between a caption and what stands below it
constexpr int captionGap = 8; ///< between a caption and what stands beside it
constexpr int momentSpacing = 20; ///< between the day and the time
constexpr int captionHeight = 15;
/// As much of a text of one line as a person goes through with the arrow keys.
constexpr qsizetype mostInField = 5'000;

/// The space between two groups. It gives a little before the form must scroll, which it would by a
/// few pixels in a window as high as one opens.
class Gap final : public QSpacerItem {
public:
    Gap()
        : QSpacerItem(0, groupSpacing, QSizePolicy::Minimum, QSizePolicy::Maximum)
    {
    }

    QSize minimumSize() const override { return {0, leastGroupSpacing}; }
};

TextLabel *makeCaption(const QString &text)
{
    auto *caption = new TextLabel(text, appFont(12), secondaryText);
    caption->setFixedHeight(std::max(scaled(captionHeight), caption->fontMetrics().height()));
    return caption;
}

QHBoxLayout *besideCaption(const QString &text, QWidget *control)
{
    auto *caption = makeCaption(text);
    caption->setFixedWidth(caption->naturalWidth());
    auto *row = new QHBoxLayout;
    row->setSpacing(captionGap);
    row->addWidget(caption, 0, Qt::AlignVCenter);
    row->addWidget(control);
    return row;
}

/// The organiser as the menu spells it.
QString asOffered(const QString &organiser)
{
    const QStringList &offered = availableOrganisers();
    const auto same = std::find_if(offered.begin(), offered.end(), [&organiser](const auto &one) {
        return sameText(one, organiser);
    });
    return same == offered.end() ? organiser : *same;
}

} // namespace

EventFormBody::EventFormBody(const EventForm &initial, const Calendar &calendar, QWidget *parent)
    : QWidget(parent)
    , m_initial(initial)
    , m_form(initial)
    , m_clock(calendar.zoneName())
    , m_title(makeField(u"Titre"_s, u"Ex: Atelier création"_s, &EventForm::title))
    , m_description(new TextEditor(u"Ex: Pour les enfants de 4 à 11 ans."_s))
    , m_tags(new TagMenuView(u"Tags"_s, availableTags()))
    , m_organiser(new PopupButton(u"Organisé par"_s, availableOrganisers()))
    , m_custom(new QWidget)
    , m_date(new DateField(u"Date"_s, QLocale(calendar.localeName())))
    , m_time(new TimeField(u"Heure"_s, QLocale(calendar.localeName()),
                           calendar.hasTwelveHours() ? TimeField::Hours::TwiceTwelve
                                                     : TimeField::Hours::TwentyFour))
{
    m_description->setAccessibleName(u"Description"_s);
    m_description->setWholeText(m_form.description);
    connect(m_description, &TextEditor::edited, this, [this] {
        change([this](EventForm &form) { form.description = m_description->wholeText(); });
    });
    connect(m_tags, &TagMenuView::selectionChanged, this, [this](const TagSet &tags) {
        change([&tags](EventForm &form) { form.selectedTags = tags; });
    });

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(padding, headingSpacing, padding, groupSpacing);
    column->setSpacing(0);
    addGroup(column, u"Titre"_s, m_title);
    addGroup(column, u"Description"_s, m_description);
    addGroup(column, u"Tags"_s, m_tags);
    addGroup(column, u"Lieu"_s, makeField(u"Lieu"_s, u"Ex: Salle Vaudrelle"_s, &EventForm::lieu));
    addGroup(column, u"Lien"_s,
             makeField(u"Lien"_s, u"Ex: https://www.exemple.fr"_s, &EventForm::link));
    addGroup(column, u"Organisé par"_s, makeOrganiser());
    addGroup(
        column, u"Email de contact"_s,
        makeField(u"Email de contact"_s, u"Ex: camille@exemple.fr"_s, &EventForm::contactEmail));
    column->addItem(new Gap);
    column->addWidget(makeMoment());
    column->addStretch();
    render();
}

QWidget *EventFormBody::titleField() const
{
    return m_title;
}

TextField *EventFormBody::makeField(const QString &name, const QString &prompt,
                                    QString EventForm::*text)
{
    const ShownText given(m_form.*text, mostInField);
    auto *field = new TextField(prompt);
    field->setAccessibleName(name);
    field->setText(given.shown());
    new EndOfComposition(field);
    connect(field, &QLineEdit::textChanged, this, [this, given, text](const QString &now) {
        change([&](EventForm &form) { form.*text = given.wholeAfter(now); });
    });
    return field;
}

void EventFormBody::addGroup(QVBoxLayout *column, const QString &caption, QWidget *control)
{
    if (column->count() > 0)
        column->addItem(new Gap);
    auto *group = new QVBoxLayout;
    group->setSpacing(captionSpacing);
    group->addWidget(makeCaption(caption));
    group->addWidget(control);
    column->addLayout(group);
}

QWidget *EventFormBody::makeOrganiser()
{
    connect(m_organiser, &PopupButton::chosen, this, [this](const QString &organiser) {
        change([&organiser](EventForm &form) { form.organisePar = organiser; });
    });
    auto *customRow = besideCaption(
        u"Préciser"_s,
        makeField(u"Préciser"_s, u"Nom de l'organisateur"_s, &EventForm::organiseParCustom));
    customRow->setContentsMargins(0, 0, 0, 0);
    m_custom->setLayout(customRow);

    auto *both = new QWidget;
    auto *column = new QVBoxLayout(both);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(captionSpacing);
    column->addWidget(m_organiser, 0, Qt::AlignLeft);
    column->addWidget(m_custom);
    return both;
}

QWidget *EventFormBody::makeMoment()
{
    m_date->setDate(shownDay(m_form.eventDate, m_clock));
    m_time->setTime(shownTime(m_form.eventTime, m_clock));
    // Going back to what was shown first is going back to the very instant.
    connect(m_date, &QDateEdit::dateChanged, this, [this, first = m_date->date()](QDate day) {
        const Instant date = day == first ? m_initial.eventDate : instantOnDay(day, m_clock);
        change([date](EventForm &form) { form.eventDate = date; });
    });
    connect(m_time, &QTimeEdit::timeChanged, this, [this, first = m_time->time()](QTime time) {
        const bool isFirst = time.hour() == first.hour() && time.minute() == first.minute();
        const Instant moment = isFirst ? m_initial.eventTime : instantAtTime(time, m_clock);
        change([moment](EventForm &form) { form.eventTime = moment; });
    });

    auto *moment = new QWidget;
    auto *row = new QHBoxLayout(moment);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(momentSpacing);
    row->addLayout(besideCaption(u"Date"_s, m_date));
    row->addLayout(besideCaption(u"Heure"_s, m_time));
    row->addStretch();
    return moment;
}

void EventFormBody::change(const std::function<void(EventForm &)> &how)
{
    how(m_form);
    render();
    Q_EMIT edited();
}

void EventFormBody::render()
{
    m_tags->setSelection(m_form.selectedTags);
    m_organiser->setValue(asOffered(m_form.organisePar));
    m_custom->setVisible(hasCustomOrganiser(m_form));
}
