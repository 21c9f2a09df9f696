#pragma once

#include "backend/SupabaseClient.h"
#include "controls/ErrorText.h"
#include "controls/PopupButton.h"
#include "editor/AddEventView.h"
#include "platform/Gmt.h"
#include "support/Await.h"
#include "support/Choosing.h"
#include "support/HttpServer.h"
#include "support/Sent.h"
#include "support/Typing.h"

#include <QAbstractButton>
#include <QDateTime>
#include <QLineEdit>
#include <QPointer>
#include <QScrollArea>
#include <QScrollBar>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

/// Ways for a test to meet the event form as a person does: by what is visible and how it is named.
namespace FormTest {

inline void signIn(HttpServer &server)
{
    server.answer(granting());
    const auto signedIn =
        outcomeOf(SupabaseClient::signIn(u"camille@exemple.fr"_s, u"mot de passe"_s));
    if (!signedIn.failure().isEmpty())
        qFatal("cannot sign in: %s", qPrintable(signedIn.failure()));
}

/// An event of the member above with all that a form shows.
inline Event fullEvent()
{
    Event event;
    event.id = u"7"_s;
    event.titre = u"Bal"_s;
    event.description = u"Deux orchestres"_s;
    event.tags = QStringList{u"Sport"_s, u"Danse"_s};
    event.lieu = u"Place"_s;
    event.link = u"https://a.fr"_s;
    event.organise_par = u"La Grange"_s;
    event.contact_email = u"a@b.fr"_s;
    event.user_id = u"moi"_s;
    event.starts_at =
        Instant{QDateTime(QDate(2026, 6, 14), QTime(16, 30, 20), inGmt).toMSecsSinceEpoch()};
    return event;
}

/// An open form over its window.
struct Form {
    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    QPointer<AddEventView> view;
    int created = 0; ///< how often the completion has run

    explicit Form(const std::optional<Event> &event = {}, AddEventView::Completion completion = {})
    {
        if (!completion)
            completion = [this] { return count(this); };
        window->setGeometry(20, 20, 760, 620);
        window->show();
        view = new AddEventView(event, completion, window.get());
        view->open();
        if (!QTest::qWaitForWindowActive(view))
            qFatal("the form does not come to the front");
    }

    static QCoro::Task<void> count(Form *form)
    {
        ++form->created;
        co_return;
    }

    /// The visible widget with this name, which must be there.
    template <typename Widget = QWidget>
    Widget *named(const QString &name) const
    {
        const auto widgets = view->findChildren<Widget *>();
        for (Widget *widget : widgets) {
            if (widget->isVisible() && widget->focusPolicy() != Qt::NoFocus
                && widget->accessibleName() == name)
                return widget;
        }
        return nullptr;
    }
    QLineEdit *field(const QString &name) const { return named<QLineEdit>(name); }
    QAbstractButton *button(const QString &name) const { return named<QAbstractButton>(name); }
    QAbstractButton *save() const
    {
        auto *create = button(u"Créer"_s);
        return create ? create : button(u"Enregistrer"_s);
    }

    void press(const QString &name) const { QTest::mouseClick(button(name), Qt::LeftButton); }
    void pressSave() const { QTest::mouseClick(save(), Qt::LeftButton); }
    /// Replaces what a field of one line holds.
    void retype(const QString &name, const QString &text) const
    {
        field(name)->setFocus(Qt::TabFocusReason);
        field(name)->selectAll();
        QTest::keyClick(field(name), Qt::Key_Delete);
        type(field(name), text);
    }
    void choose(const QString &picker, const QString &item) const
    {
        chooseByClick(named<PopupLabel>(picker), item);
    }
    bool isOpen() const { return view && view->isVisible(); }
};

/// The form's error line where it shows one.
inline ErrorText *shownError(const Form &form)
{
    auto *error = form.view->findChild<ErrorText *>();
    return error && error->isVisible() ? error : nullptr;
}

/// Where a part of the form is, from the card's corner.
inline QRect onCard(const Form &form, const QWidget *widget)
{
    return QRect(widget->mapTo(form.view, QPoint()), widget->size())
        .translated(-form.view->card().topLeft());
}

inline QScrollBar *scrollBar(const Form &form)
{
    return form.view->findChild<QScrollArea *>()->verticalScrollBar();
}

/// Saves and waits until the form has closed; whether it did.
inline bool saves(const Form &form)
{
    form.pressSave();
    return QTest::qWaitFor([&form] { return !form.isOpen(); });
}

/// Saves and waits until the form says why it failed.
inline QString failure(const Form &form)
{
    form.pressSave();
    if (!QTest::qWaitFor([&form] { return shownError(form) != nullptr; }))
        return u"(none shown)"_s;
    return shownError(form)->text();
}

} // namespace FormTest
