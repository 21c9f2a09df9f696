#pragma once

#include "backend/SupabaseClient.h"
#include "controls/Menu.h"
#include "controls/PopupButton.h"
#include "editor/AddEventView.h"
#include "support/Await.h"
#include "support/HttpServer.h"
#include "support/Typing.h"

#include <QAbstractButton>
#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QPointer>

/// Ways for a test to meet the event form as a person does: by what is visible and how it is named.
namespace FormTest {

inline void signIn(HttpServer &server)
{
    server.answer(HttpAnswer::whole(200, "{\"access_token\":\"jeton\",\"user\":{\"id\":\"moi\"}}"));
    const auto signedIn = outcomeOf(SupabaseClient::signIn(QStringLiteral("camille@exemple.fr"),
                                                           QStringLiteral("mot de passe")));
    if (!signedIn.failure().isEmpty())
        qFatal("cannot sign in: %s", qPrintable(signedIn.failure()));
}

/// An event of the member above with all that a form shows.
inline Event fullEvent()
{
    Event event;
    event.id = QStringLiteral("7");
    event.titre = QStringLiteral("Bal");
    event.description = QStringLiteral("Deux orchestres");
    event.tags = QStringList{QStringLiteral("Sport"), QStringLiteral("Danse")};
    event.lieu = QStringLiteral("Place");
    event.link = QStringLiteral("https://a.fr");
    event.organise_par = QStringLiteral("La Grange");
    event.contact_email = QStringLiteral("a@b.fr");
    event.user_id = QStringLiteral("moi");
    event.starts_at =
        Instant{QDateTime(QDate(2026, 6, 14), QTime(16, 30, 20), Qt::UTC).toMSecsSinceEpoch()};
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
        auto *create = button(QStringLiteral("Créer"));
        return create ? create : button(QStringLiteral("Enregistrer"));
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
        auto *label = named<PopupLabel>(picker);
        QTest::mouseClick(label, Qt::LeftButton);
        const auto items = label->menu()->actions();
        for (QAction *action : items) {
            if (action->text() == item) {
                QTest::mouseClick(label->menu(), Qt::LeftButton, {},
                                  label->menu()->actionGeometry(action).center());
                return;
            }
        }
        qFatal("no such item");
    }
    bool isOpen() const { return view && view->isVisible(); }
};

inline QJsonObject body(const HttpRequest &request)
{
    return QJsonDocument::fromJson(request.body).object();
}

} // namespace FormTest
