// The sign-in form by itself: what it says, where the keyboard goes, what closes it. What it does
// with the service is in test_login_view_requests.cpp.

#include "controls/SegmentedControl.h"
#include "controls/TextLabel.h"
#include "look/Colors.h"
#include "look/Fonts.h"
#include "support/HttpServer.h"
#include "support/LabelledHeight.h"
#include "support/LoginForm.h"
#include "support/Picture.h"
#include "support/ViewMain.h"

#include <QInputMethodEvent>
#include <QSignalSpy>
#include <QWindow>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString connexion = u"Connexion"_s;
const QString creation = u"Créer un compte"_s;

/// The roles and names under `parent`, as a screen reader walks through them.
void walk(QAccessibleInterface *parent, QList<std::pair<QAccessible::Role, QString>> &found)
{
    for (int i = 0; parent && i < parent->childCount(); ++i) {
        QAccessibleInterface *child = parent->child(i);
        if (!child || child->state().invisible)
            continue;
        found.append({child->role(), child->text(QAccessible::Name)});
        walk(child, found);
    }
}

/// Counts how often what it filters is put over all others, or below.
struct ZOrderCounter : QObject {
    int count = 0;

    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::ZOrderChange ? 1 : 0;
        return false;
    }
};

} // namespace

class TestLoginView : public QObject {
    Q_OBJECT

public:
    explicit TestLoginView(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void init() { QApplication::setPalette(applicationPalette(ColorScheme::Light)); }
    void cleanup() { QCOMPARE(m_server.requests().size(), 0); }

    void theModesAreOfferedInOrderUnderTheirLabels()
    {
        QCOMPARE(AuthMode::allCases.size(), size_t{2});
        QVERIFY(AuthMode::allCases[0] == AuthMode::signIn);
        QVERIFY(AuthMode::allCases[1] == AuthMode::signUp);
        QCOMPARE(AuthMode(AuthMode::signIn).rawValue(), u"Connexion"_s);
        QCOMPARE(AuthMode(AuthMode::signUp).rawValue(), u"Créer un compte"_s);
        for (const AuthMode mode : AuthMode::allCases)
            QCOMPARE(mode.id(), mode.rawValue());
    }

    void onlyItsOwnLabelNamesAMode()
    {
        for (const AuthMode mode : AuthMode::allCases)
            QVERIFY(AuthMode::fromRawValue(mode.rawValue()) == mode);
        for (const auto &other :
             {QString(), u"connexion"_s, u"Connexion "_s, u"signIn"_s, u"Cre\u0301er un compte"_s})
            QVERIFY(!AuthMode::fromRawValue(other));
    }

    void theFormSaysWhatItIsFor()
    {
        const LoginForm form;
        QStringList texts;
        const auto labels = form.view->findChildren<TextLabel *>();
        for (const auto *label : labels) {
            QVERIFY(label->isVisible());
            texts.append(label->text());
        }
        QCOMPARE(texts,
                 (QStringList{u"Compte aMorvelle"_s, u"Connectez-vous ou créez un compte."_s,
                              u"Mode"_s}));
        QCOMPARE(form.email()->placeholderText(), u"Email"_s);
        QCOMPARE(form.password()->placeholderText(), u"Mot de passe"_s);
        QCOMPARE(form.cancel()->label(), u"Annuler"_s);
    }

    void openedToSignInItSaysSo()
    {
        const LoginForm form(AuthMode::signIn);
        QVERIFY(form.segment(connexion)->isChecked());
        QVERIFY(!form.segment(creation)->isChecked());
        QCOMPARE(form.primary()->label(), u"Se connecter"_s);
    }

    void openedToCreateAnAccountItSaysSo()
    {
        const LoginForm form(AuthMode::signUp);
        QVERIFY(form.segment(creation)->isChecked());
        QVERIFY(!form.segment(connexion)->isChecked());
        QCOMPARE(form.primary()->label(), u"Créer un compte"_s);
    }

    void theButtonIsNamedAfterTheModeAtOnce()
    {
        const LoginForm form;
        QTest::mouseClick(form.segment(creation), Qt::LeftButton);
        QCOMPARE(form.primary()->label(), u"Créer un compte"_s);
        QTest::keyClick(form.segment(creation), Qt::Key_Left);
        QCOMPARE(form.primary()->label(), u"Se connecter"_s);
    }

    void thePasswordIsNotShown()
    {
        const LoginForm form;
        form.type(u"a"_s, u"secret"_s);
        QCOMPARE(form.password()->text(), u"secret"_s);
        QCOMPARE(form.password()->displayText(), QString(6, QChar(0x2022)));
        QCOMPARE(form.email()->displayText(), u"a"_s);
    }

    void theEmailIsNotCorrectedByTheKeyboard()
    {
        const LoginForm form;
        QVERIFY(form.email()->inputMethodHints() & Qt::ImhNoPredictiveText);
        QVERIFY(form.email()->inputMethodHints() & Qt::ImhNoAutoUppercase);
    }

    void theEmailHasTheFocusWhenTheFormOpens()
    {
        const LoginForm form;
        QTRY_VERIFY(form.view->isActiveWindow());
        QTRY_VERIFY(form.email()->hasFocus());
        QTest::keyClick(form.window.windowHandle(), Qt::Key_A);
        QCOMPARE(form.email()->text(), u"a"_s);
    }

    void itComesToTheFrontOfWhateverWasThere()
    {
        QWidget window;
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QWidget other;
        other.show();
        other.activateWindow();
        QTRY_VERIFY(other.isActiveWindow());
        ZOrderCounter raised;
        window.installEventFilter(&raised);
        LoginView view(AuthMode::signIn, &window);
        view.open();
        QCOMPARE(view.focusWidget()->accessibleName(), u"Email"_s); // at once
        QTRY_COMPARE(QGuiApplication::focusWindow(), window.windowHandle());
        QVERIFY(raised.count > 0);
        QVERIFY(view.focusWidget());
        QCOMPARE(view.focusWidget()->accessibleName(), u"Email"_s);
        QTRY_VERIFY(view.focusWidget()->hasFocus());
    }

    void aFormIsAlwaysFresh()
    {
        LoginForm first(AuthMode::signUp);
        first.type(u"a@b.fr"_s, u"secret"_s);
        QTest::mouseClick(first.cancel(), Qt::LeftButton);
        const LoginForm second(AuthMode::signUp);
        QCOMPARE(second.email()->text(), QString());
        QCOMPARE(second.password()->text(), QString());
        QCOMPARE(second.shownError(), QString());
        QVERIFY(!second.primary()->isEnabled());
    }

    void withoutEmailOrPasswordThereIsNothingToPress_data()
    {
        QTest::addColumn<QString>("email");
        QTest::addColumn<QString>("password");
        QTest::addColumn<bool>("canPress");
        QTest::newRow("neither") << QString() << QString() << false;
        QTest::newRow("no password") << u"a"_s << QString() << false;
        QTest::newRow("no email") << QString() << u"p"_s << false;
        QTest::newRow("both") << u"a"_s << u"p"_s << true;
        QTest::newRow("a blank in each") << u" "_s << u" "_s << true;
    }

    void withoutEmailOrPasswordThereIsNothingToPress()
    {
        QFETCH(QString, email);
        QFETCH(QString, password);
        QFETCH(bool, canPress);
        const LoginForm form;
        form.type(email, password);
        QCOMPARE(form.primary()->isEnabled(), canPress);
        QTest::mouseClick(form.segment(creation), Qt::LeftButton);
        QCOMPARE(form.primary()->isEnabled(), canPress);
    }

    void takingTheTextBackTakesTheButtonBack()
    {
        const LoginForm form;
        form.type(u"a"_s, u"p"_s);
        QTest::keyClick(form.password(), Qt::Key_Backspace);
        QVERIFY(!form.primary()->isEnabled());
    }

    void tabWalksThroughTheFormAsTheEyeDoes()
    {
        const LoginForm form(AuthMode::signUp);
        form.type(u"a"_s, u"p"_s);
        QTRY_VERIFY(form.view->isActiveWindow());
        form.segment(creation)->setFocus(Qt::TabFocusReason);
        const QList<QWidget *> stops{form.email(), form.password(), form.cancel(), form.primary(),
                                     form.segment(creation)};
        for (const QWidget *stop : stops) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), stop);
        }
    }

    void returnInAFieldDoesNothing()
    {
        const LoginForm form;
        form.type(u"a"_s, u"p"_s);
        for (TextField *field : {form.email(), form.password()}) {
            for (const auto key : {Qt::Key_Return, Qt::Key_Enter})
                QTest::keyClick(field, key);
        }
        QVERIFY(form.isOpen());
        QVERIFY(form.primary()->isEnabled());
        QCOMPARE(form.email()->text(), u"a"_s);
    }

    void returnOnTheModeDoesNothing()
    {
        const LoginForm form;
        form.type(u"a"_s, u"p"_s);
        QTest::keyClick(form.segment(connexion), Qt::Key_Return);
        QVERIFY(form.isOpen());
        QVERIFY(form.primary()->isEnabled());
    }

    void spaceOnCancelClosesTheForm()
    {
        const LoginForm form;
        form.type(u"a"_s, u"p"_s);
        const QSignalSpy closed(form.view, &Sheet::closed);
        QTest::keyClick(form.cancel(), Qt::Key_Space);
        QVERIFY(!form.isOpen());
        QCOMPARE(closed.count(), 1);
    }

    void escapeClosesAFormWithNothingInIt()
    {
        const LoginForm form;
        QTest::keyClick(form.email(), Qt::Key_Escape);
        QVERIFY(!form.isOpen());
    }

    void escapeDoesNotLoseWhatWasTyped_data()
    {
        QTest::addColumn<QString>("email");
        QTest::addColumn<QString>("password");
        QTest::newRow("an email") << u"a"_s << QString();
        QTest::newRow("a password") << QString() << u"p"_s;
        QTest::newRow("a blank") << u" "_s << QString();
    }

    void escapeDoesNotLoseWhatWasTyped()
    {
        QFETCH(QString, email);
        QFETCH(QString, password);
        const LoginForm form;
        form.type(email, password);
        for (QWidget *where :
             QList<QWidget *>{form.email(), form.password(), form.cancel(), form.view})
            QTest::keyClick(where, Qt::Key_Escape);
        QVERIFY(form.isOpen());
        QCOMPARE(form.email()->text(), email);
        QCOMPARE(form.password()->text(), password);
    }

    void escapeClosesOnceWhatWasTypedIsErased()
    {
        const LoginForm form;
        form.type(u"a"_s, QString());
        QTest::keyClick(form.email(), Qt::Key_Backspace);
        QTest::keyClick(form.email(), Qt::Key_Escape);
        QVERIFY(!form.isOpen());
    }

    void escapeEndsACompositionBeforeItClosesTheForm()
    {
        const LoginForm form;
        QTRY_VERIFY(form.email()->hasFocus());
        QInputMethodEvent composing(u"^"_s, {});
        QCoreApplication::sendEvent(form.email(), &composing);
        QTest::keyClick(form.email(), Qt::Key_Escape);
        QVERIFY(form.isOpen());
        QCOMPARE(form.email()->text(), QString());
        QTest::keyClick(form.email(), Qt::Key_Escape);
        QVERIFY(!form.isOpen());
    }

    void aComposedCharacterIsTyped()
    {
        const LoginForm form;
        QInputMethodEvent composing(u"^"_s, {});
        QCoreApplication::sendEvent(form.email(), &composing);
        QInputMethodEvent composed;
        composed.setCommitString(u"ê"_s);
        QCoreApplication::sendEvent(form.email(), &composed);
        QCOMPARE(form.email()->text(), u"ê"_s);
        QTest::keyClick(form.email(), Qt::Key_Escape);
        QVERIFY(form.isOpen());
    }

    void thereIsNoErrorLineAndNoRoomForOneAtFirst()
    {
        const LoginForm form;
        QVERIFY(!form.error()->isVisible());
        const int title = lineHeight(appFont(20, QFont::DemiBold)) + 6 + lineHeight(appFont(13));
        const int controls = 3 * scaled(28) + labelledHeight();
        QCOMPARE(form.view->card().size(), QSize(360, 20 + title + 4 * 12 + controls + 20));
    }

    void allStandsTwelveApartFromLeftToRight()
    {
        const LoginForm form;
        const auto place = [&form](const QWidget *widget) {
            return QRect(widget->mapTo(form.view.data(), QPoint()), widget->size());
        };
        const QRect card = form.view->card();
        const QRect mode = place(form.view->findChild<SegmentedControl *>());
        QCOMPARE(place(form.email()).left(), card.left() + 20);
        QCOMPARE(place(form.email()).right(), card.right() - 20);
        QCOMPARE(place(form.email()).top(), mode.bottom() + 1 + 12);
        QCOMPARE(place(form.password()).top(), place(form.email()).bottom() + 1 + 12);
        QCOMPARE(place(form.cancel()).top(), place(form.password()).bottom() + 1 + 12);
        QCOMPARE(place(form.cancel()).left(), card.left() + 20);
        QCOMPARE(place(form.primary()).right(), card.right() - 20);
        QCOMPARE(place(form.primary()).bottom(), card.bottom() - 20);
    }

    void theReaderIsToldAllOfIt()
    {
        const LoginForm form;
        QAccessibleInterface *sheet = QAccessible::queryAccessibleInterface(form.view);
        QCOMPARE(sheet->role(), QAccessible::Dialog);
        QCOMPARE(sheet->text(QAccessible::Name), u"Compte aMorvelle"_s);
        QList<std::pair<QAccessible::Role, QString>> found;
        walk(sheet, found);
        using Told = std::pair<QAccessible::Role, QString>;
        for (const Told &told :
             {Told(QAccessible::Heading, u"Compte aMorvelle"_s),
              Told(QAccessible::StaticText, u"Connectez-vous ou créez un compte."_s),
              Told(QAccessible::Grouping, u"Mode"_s), Told(QAccessible::RadioButton, connexion),
              Told(QAccessible::RadioButton, creation), Told(QAccessible::EditableText, u"Email"_s),
              Told(QAccessible::EditableText, u"Mot de passe"_s),
              Told(QAccessible::Button, u"Annuler"_s),
              Told(QAccessible::Button, u"Se connecter"_s)})
            QVERIFY2(found.contains(told), qPrintable(told.second));
        auto *password = QAccessible::queryAccessibleInterface(form.password());
        QVERIFY(password->state().passwordEdit);
    }

    void theFormFollowsTheScheme()
    {
        for (const auto scheme : {ColorScheme::Light, ColorScheme::Dark}) {
            QApplication::setPalette(applicationPalette(scheme));
            const LoginForm form;
            form.type(u"a"_s, u"p"_s);
            const QImage image = picture(*form.view);
            const QPoint fill = form.primary()->mapTo(form.view.data(), QPoint(6, 6));
            COMPARE_COLORS(image.pixelColor(fill), accent(applicationPalette(scheme)));
        }
    }

private:
    HttpServer &m_server;
};

int main(int argc, char *argv[])
{
    return runWithService<TestLoginView>(argc, argv);
}

#include "test_login_view.moc"
