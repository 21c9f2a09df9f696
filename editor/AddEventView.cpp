#include "editor/AddEventView.h"

#include "app/ButtonStyles.h"
#include "backend/LocalizedError.h"
#include "backend/SupabaseClient.h"
#include "backend/Unattended.h"
#include "controls/ErrorText.h"
#include "controls/TextLabel.h"
#include "editor/EventFormBody.h"
#include "look/Accessibility.h"
#include "look/Fonts.h"

#include <QDebug>
#include <QHBoxLayout>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int cardWidth = 460;
constexpr int padding = 20;
constexpr int errorSpacing = 10;
constexpr int buttonSpacing = 2; ///< above the buttons, besides what stands above
constexpr int mostErrorLines = 4;

} // namespace

AddEventView::AddEventView(const std::optional<Event> &existingEvent, const Completion &onCreated,
                           QWidget *over, const Now &now)
    : Sheet(cardWidth, over)
    , m_existingEvent(existingEvent)
    , m_onCreated(onCreated)
    , m_calendar(Calendar::current())
    , m_initial(initialForm(existingEvent, SupabaseClient::session().userEmail, now()))
    , m_body(new EventFormBody(m_initial, m_calendar))
{
    connect(m_body, &EventFormBody::edited, this, &AddEventView::render);
    setHeader(makeHeader());
    setBody(m_body);
    setFooter(makeFooter());
    setInitialFocus(m_body->titleField());
    render();
}

QWidget *AddEventView::makeHeader()
{
    const QString title = m_existingEvent ? u"Modifier l'événement"_s : u"Ajouter un événement"_s;
    setAccessibleName(title);
    auto *header = new QWidget;
    auto *heading = new TextLabel(title, appFont(20, QFont::DemiBold));
    setAccessibleRole(heading, QAccessible::Heading);
    auto *column = new QVBoxLayout(header);
    column->setContentsMargins(padding, padding, padding, 0);
    column->addWidget(heading);
    return header;
}

QWidget *AddEventView::makeFooter()
{
    m_error = new ErrorText;
    m_error->setMaximumLines(mostErrorLines);
    m_errorRow = new QWidget;
    auto *errorColumn = new QVBoxLayout(m_errorRow);
    errorColumn->setContentsMargins(0, 0, 0, errorSpacing);
    errorColumn->addWidget(m_error);

    auto *cancel = new SecondaryButton(u"Annuler"_s);
    connect(cancel, &QPushButton::clicked, this, &QWidget::close);
    setWayOut(cancel);
    m_save = new PrimaryButton(m_existingEvent ? u"Enregistrer"_s : u"Créer"_s);
    connect(m_save, &QPushButton::clicked, this, &AddEventView::submit);
    auto *buttons = new QHBoxLayout;
    buttons->setContentsMargins(0, buttonSpacing, 0, 0);
    buttons->addWidget(cancel);
    buttons->addStretch();
    buttons->addWidget(m_save);

    auto *footer = new QWidget;
    auto *column = new QVBoxLayout(footer);
    column->setContentsMargins(padding, 0, padding, padding);
    column->setSpacing(0);
    column->addWidget(m_errorRow);
    column->addLayout(buttons);
    return footer;
}

void AddEventView::submit()
{
    if (m_state.isSubmitting || !isComplete(m_body->form()))
        return;
    m_state = {.isSubmitting = true, .errorMessage = {}};
    // A button that is disabled hands the focus to the next field, which may not even be in sight.
    m_hadFocusToSave = m_save->hasFocus();
    if (m_hadFocusToSave)
        setFocus(Qt::OtherFocusReason);
    render();

    const QString id = m_existingEvent ? m_existingEvent->id : freshIdentifier();
    std::optional<QString> existingId;
    if (m_existingEvent)
        existingId = id;
    runUnattended(save(this, existingId,
                       payloadOf(m_body->form(), id, SupabaseClient::session().userId, m_calendar),
                       m_onCreated));
}

QCoro::Task<void> AddEventView::save(QPointer<AddEventView> view, std::optional<QString> existingId,
                                     EventCreatePayload payload, Completion onCreated)
{
    std::optional<QString> failure;
    try {
        auto sending = existingId ? SupabaseClient::updateEvent(*existingId, payload)
                                  : SupabaseClient::createEvent(payload);
        co_await sending;
    } catch (...) {
        failure = currentFailure();
    }
    if (!failure && onCreated) {
        try {
            auto completion = onCreated();
            co_await completion;
        } catch (...) {
            // The event is saved all the same: to keep the form open would ask to save it again.
            qWarning().noquote() << "After a save:" << currentFailure();
        }
    }
    if (view)
        view->finish(failure);
}

void AddEventView::finish(const std::optional<QString> &failure)
{
    m_state = {.isSubmitting = false, .errorMessage = failure};
    render();
    if (!failure)
        close();
    // As it was before, with its ring where it had one; unless the person went elsewhere.
    else if (m_hadFocusToSave && hasFocus())
        m_save->setFocus(Qt::ActiveWindowFocusReason);
}

void AddEventView::render()
{
    m_error->setText(m_state.errorMessage.value_or(QString()));
    m_errorRow->setVisible(m_state.errorMessage.has_value());
    m_save->setEnabled(!m_state.isSubmitting && isComplete(m_body->form()));
    setHolds(m_state.isSubmitting || m_body->form() != m_initial);
}
