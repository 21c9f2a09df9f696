#pragma once

#include "controls/Sheet.h"
#include "editor/EventForm.h"
#include "platform/Now.h"

#include <QCoro/QCoroTask>

#include <functional>
#include <optional>

class ErrorText;
class EventFormBody;
class PrimaryButton;

/// The sheet that creates an event or changes one. It closes by itself after a save, and stays with
/// all that was typed when a save fails. The keyboard's cancel closes it only while nothing in it
/// was changed.
class AddEventView : public Sheet {
    Q_OBJECT

public:
    /// Awaited after a save has succeeded.
    using Completion = std::function<QCoro::Task<void>()>;

    /// Without `existingEvent` it creates one. `onCreated` runs after every save that succeeds,
    /// also when this, and the window of `over`, are gone by then: it must look after what it
    /// reaches itself, and must not throw. `now` tells what a new event's date and time begin as.
    AddEventView(const std::optional<Event> &existingEvent, const Completion &onCreated,
                 QWidget *over, const Now &now = Instant::now);

private:
    struct State {
        bool isSubmitting = false;
        std::optional<QString> errorMessage;
    };

    QWidget *makeHeader();
    QWidget *makeFooter();
    void submit();
    static QCoro::Task<void> save(QPointer<AddEventView> view, std::optional<QString> existingId,
                                  EventCreatePayload payload, Completion onCreated);
    void finish(const std::optional<QString> &failure);
    void render();

    const std::optional<Event> m_existingEvent;
    const Completion m_onCreated;
    const Calendar m_calendar;
    const EventForm m_initial;
    State m_state;
    bool m_hadFocusToSave = false; ///< the button, before it was disabled

    EventFormBody *m_body;
    QWidget *m_errorRow = nullptr;
    ErrorText *m_error = nullptr;
    PrimaryButton *m_save = nullptr;
};
