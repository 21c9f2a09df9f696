// Takes pictures for scripts/pictures: the window and its sheets on the local service, light and
// dark. Usage: take_pictures FOLDER SUFFIX [invented], where SUFFIX ("" or "-2x") goes with
// QT_SCALE_FACTOR; "invented": the few on invented events, in a process of their own, since the
// service is chosen once in a process.

#include "backend/SupabaseClient.h"
#include "browse/EventRow.h"
#include "controls/ErrorText.h"
#include "controls/PopupLabel.h"
#include "look/Colors.h"
#include "support/LocalService.h"
#include "support/MembersWindow.h"
#include "support/OwnHome.h"

#include <QApplication>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <functional>
#include <utility>

using namespace Qt::StringLiterals;
using namespace WindowTest;
using namespace MembersWindow;

namespace {

const QString email = u"camille@morvelle.example"_s;
const QString password = u"un mot de passe"_s;

/// Ends the program when what it waits for does not come.
void await(const char *what, const std::function<bool()> &condition)
{
    if (!QTest::qWaitFor(condition, 10'000))
        qFatal("in vain: %s", what);
}

EventRow *firstRow(const QWidget *window)
{
    const auto rows = window->findChildren<EventRow *>();
    for (EventRow *row : rows) {
        if (row->isVisible())
            return row;
    }
    return nullptr;
}

/// The pictures of one window, in one scheme.
class Album {
public:
    Album(QString folder, QLatin1StringView scheme, QString suffix)
        : m_folder(std::move(folder))
        , m_scheme(scheme)
        , m_suffix(std::move(suffix))
    {
    }

    /// The window with its sheet, and the popup that hangs from it.
    void take(const char *view, QWidget *window, QWidget *popup = nullptr) const
    {
        QPixmap picture = window->grab();
        if (popup) {
            const QPoint place = popup->geometry().topLeft() - window->geometry().topLeft();
            QPainter(&picture).drawPixmap(place, popup->grab());
        }
        const QString file =
            u"%1/%2-%3%4.png"_s.arg(m_folder, QLatin1StringView(view), m_scheme, m_suffix);
        if (!picture.save(file))
            qFatal("cannot write %s", qPrintable(file));
        qInfo("%s", qPrintable(file));
    }

private:
    QString m_folder;
    QLatin1StringView m_scheme;
    QString m_suffix;
};

void type(const QWidget *form, const QString &name, const QString &text)
{
    QLineEdit *edit = field(form, name);
    edit->setFocus(Qt::MouseFocusReason);
    edit->selectAll();
    QTest::keyClicks(edit, text);
}

Sheet *openSheet(QWidget *window)
{
    window->activateWindow(); // which a menu that closes gives to nobody where no desktop does
    await("a sheet", [window] { return sheet(window) && sheet(window)->isActiveWindow(); });
    return sheet(window);
}

void awaitRefusal(const Sheet *form)
{
    await("a refusal", [form] {
        const auto errors = form->findChildren<ErrorText *>();
        return std::any_of(errors.begin(), errors.end(),
                           [](const ErrorText *error) { return error->isVisible(); });
    });
    QTest::qWait(100); // for the sheet to make room for it
}

void takeSignedOut(const Album &album, ContentView *window)
{
    album.take("window", window);
    window->resize(window->minimumSize());
    album.take("window-minimum", window);
    window->resize(window->sizeHint());
    QScrollBar *bar = shownList(window)->findChild<QScrollBar *>();
    bar->setValue(60);
    album.take("window-scrolled", window);
    bar->setValue(0);

    QTest::mouseClick(firstRow(window), Qt::LeftButton);
    openSheet(window);
    album.take("detail", window);
    sheet(window)->close();

    QTest::mouseClick(named(window, u"Passés"_s), Qt::LeftButton);
    album.take("window-past", window);
    QTest::mouseClick(named(window, u"À venir"_s), Qt::LeftButton);
}

void takeSigningIn(const Album &album, ContentView *window)
{
    click(window, u"Ajouter un compte"_s);
    Sheet *form = openSheet(window);
    await("the focus", [form] { return field(form, u"Email"_s)->hasFocus(); });
    type(form, u"Email"_s, u"marthe@morvelle.example"_s);
    type(form, u"Mot de passe"_s, password);
    QTest::mouseClick(createAccount(form), Qt::LeftButton);
    awaitRefusal(form);
    album.take("sign-up", window);
    click(form, u"Annuler"_s);

    click(window, u"Ajouter un compte"_s);
    form = openSheet(window);
    await("the focus", [form] { return field(form, u"Email"_s)->hasFocus(); });
    click(form, u"Connexion"_s);
    field(form, u"Email"_s)->setFocus(Qt::TabFocusReason);
    album.take("sign-in", window);
    type(form, u"Email"_s, email);
    type(form, u"Mot de passe"_s, u"not it"_s);
    click(form, u"Se connecter"_s);
    awaitRefusal(form);
    field(form, u"Mot de passe"_s)->setFocus(Qt::TabFocusReason);
    album.take("sign-in-error", window);
    type(form, u"Mot de passe"_s, password);
    click(form, u"Se connecter"_s);
    await("the session", [window] { return button(window, u"Ajouter un événement"_s) != nullptr; });
}

void takeForm(const Album &album, ContentView *window)
{
    click(window, u"Ajouter un événement"_s);
    Sheet *form = openSheet(window);
    album.take("form", window);

    const auto labels = form->findChildren<PopupLabel *>();
    QTest::mouseClick(labels.first(), Qt::LeftButton);
    QWidget *menu = QApplication::activePopupWidget();
    album.take("form-tag-menu", window, menu);
    menu->close();

    // An organiser of one's own, and a title that the service takes for too long.
    labels.last()->setFocus(Qt::TabFocusReason);
    QTest::keyClick(labels.last(), Qt::Key_Space);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_End);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Return);
    type(form, u"Préciser"_s, u"Les Joyeux Marcheurs"_s);
    type(form, u"Titre"_s, QString(201, u'a'));
    click(form, u"Créer"_s);
    awaitRefusal(form);
    album.take("form-error", window);
    click(form, u"Annuler"_s);
}

void takeSignedIn(const Album &album, ContentView *window)
{
    album.take("window-signed-in", window);
    click(window, u"Compte"_s);
    album.take("account-menu", window, accountMenu(window));
    accountMenu(window)->close();

    takeForm(album, window);

    const auto rows = window->findChildren<EventRow *>();
    for (const EventRow *row : rows) {
        if (row->isVisible() && button(row, u"Supprimer"_s)) {
            click(row, u"Supprimer"_s);
            break;
        }
    }
    openSheet(window);
    album.take("delete", window);
    sheet(window)->close();
}

/// What the village's own events do not show: none at all, and texts without end.
void takeInvented(const Album &album, HttpServer &server)
{
    server.answer(reply({}));
    {
        ContentView window;
        window.show();
        await("nothing", [&window] { return named(&window, u"No events found."_s) != nullptr; });
        album.take("window-empty", &window);
    }
    const QString sentence =
        u"Une très longue phrase qui ne veut pas finir et qui continue sur la ligne suivante. "_s;
    const QJsonObject longTexts{
        {u"titre"_s, sentence + sentence},
        {u"description"_s, sentence.repeated(8)},
        {u"date_texte"_s, u"Samedi 28 novembre à la tombée de la nuit"_s},
        {u"heure_texte"_s, u"vers 18 h 30"_s},
        {u"lieu"_s, sentence},
        {u"tags"_s,
         QJsonArray{u"Vie du village"_s, u"Spectacle"_s, u"Jeune public"_s, u"Bibliotheque"_s,
                    u"Conférence"_s, u"Projection"_s}},
    };
    server.answer(reply({row(u"a"_s, 3, longTexts), row(u"b"_s, 4, longTexts)}));
    ContentView window;
    window.resize(window.minimumSize());
    window.show();
    await("an event", [&window] { return firstRow(&window) != nullptr; });
    album.take("window-minimum-long-texts", &window);
}

} // namespace

int main(int argc, char *argv[])
{
    const OwnHome home;
    const QApplication application(argc, argv);
    QApplication::setCursorFlashTime(0); // it would be there or not by chance
    const SupabaseClient::Lifetime client(home.path() + u"/reply.json"_s);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 3)
        qFatal("usage: take_pictures FOLDER SUFFIX [invented]");
    const QList<ColorScheme> schemes{ColorScheme::Light, ColorScheme::Dark};
    const auto albumOf = [&arguments](ColorScheme scheme) {
        QApplication::setPalette(applicationPalette(scheme));
        return Album(arguments[1], scheme == ColorScheme::Light ? "light"_L1 : "dark"_L1,
                     arguments[2]);
    };
    if (arguments.size() == 4) {
        HttpServer server;
        qputenv("SUPABASE_URL", server.base().toLatin1());
        qputenv("SUPABASE_KEY", "public-key");
        for (const ColorScheme scheme : schemes)
            takeInvented(albumOf(scheme), server);
        return 0;
    }
    LocalService service({u"--confirm-email"_s, u"--seed-password"_s, password});
    if (!service.isRunning())
        qFatal("the local service did not start:\n%s", qPrintable(service.output()));
    qputenv("SUPABASE_URL", service.url().toLatin1());
    qputenv("SUPABASE_KEY", service.key().toLatin1());

    QList<ContentView *> windows;
    QList<Album> albums;
    for (const ColorScheme scheme : schemes) {
        const Album album = albumOf(scheme);
        {
            // Taken before the event loop can bring the reply.
            ContentView loading;
            loading.show();
            album.take("window-loading", &loading);
        }
        ContentView *window = shownWindow().release();
        await("an event", [window] { return firstRow(window) != nullptr; });
        takeSignedOut(album, window);
        takeSigningIn(album, window);
        takeSignedIn(album, window);
        SupabaseClient::signOut();
        SupabaseClient::clearSavedCredentials();
        await("the header", [window] { return button(window, u"Ajouter un compte"_s) != nullptr; });
        windows.append(window);
        albums.append(album);
    }

    // Nobody answers any more.
    service.stop();
    for (qsizetype i = 0; i < windows.size(); ++i) {
        QApplication::setPalette(applicationPalette(schemes[i]));
        windows[i]->activateWindow();
        await("the front", [&] { return windows[i]->isActiveWindow(); });
        QTest::keyClick(windows[i], Qt::Key_F5);
        await("a failure",
              [&] { return !firstRow(windows[i]) && !named(windows[i], u"Loading events…"_s); });
        albums[i].take("window-error", windows[i]);
    }
    qDeleteAll(windows);
    return 0;
}
