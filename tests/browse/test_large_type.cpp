// A desktop whose type is half as large again and more, and the smallest window: sheets.

#include "account/LoginView.h"
#include "app/ButtonStyles.h"
#include "browse/DeleteConfirmation.h"
#include "browse/EventDetailView.h"
#include "controls/ErrorText.h"
#include "controls/TextField.h"
#include "controls/TextLabel.h"
#include "editor/AddEventView.h"
#include "look/Fonts.h"
#include "support/LargeType.h"
#include "support/MembersWindow.h"
#include "support/ViewMain.h"

#include <QScrollArea>
#include <QScrollBar>

#include <functional>

using namespace Qt::StringLiterals;
using namespace MembersWindow;

namespace {

using Make = std::function<Sheet *(QWidget *)>;

const QByteArray reason = QByteArray("une explication qui ne veut pas finir ").repeated(12);

Event longEvent()
{
    Event event;
    event.id = u"1"_s;
    event.titre = u"Marché de Noël et de l’Épiphanie"_s;
    event.description = u"Chacun apporte un bol et les voisins des histoires. "_s.repeated(6);
    event.date_texte = u"2026-12-05"_s;
    event.heure_texte = u"10:00"_s;
    event.organise_par = u"Les Joyeux Marcheurs"_s;
    event.contact_email = u"contact@exemple.fr"_s;
    event.link = u"https://exemple.fr"_s;
    event.tags = QStringList{u"Repas"_s};
    return event;
}

QList<QWidget *> controlsOf(const Sheet *sheet)
{
    QList<QWidget *> controls;
    const auto widgets = sheet->findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        const bool isControl = qobject_cast<QAbstractButton *>(widget)
            || qobject_cast<QLineEdit *>(widget) || qobject_cast<QAbstractScrollArea *>(widget)
            || qobject_cast<TextLabel *>(widget);
        // What holds others is no control, nor is the text within a field or an error.
        if (isControl && widget->isVisible() && !qobject_cast<QScrollArea *>(widget)
            && widget->objectName() != u"qt_spinbox_lineedit"_s)
            controls.append(widget);
    }
    return controls;
}

bool isWhole(const QWidget *widget)
{
    return widget->visibleRegion().boundingRect() == widget->rect();
}

} // namespace

class TestLargeType : public QObject {
    Q_OBJECT

public:
    explicit TestLargeType(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void initTestCase();
    void everyControlOfASheetIsReachableAndWhole_data();
    void everyControlOfASheetIsReachableAndWhole();
    void sheetsGrowWithTheTypeUpToTheSides();
    void labelsOfTheSignInFormBreakNoWord();

private:
    HttpServer &m_server;
};

void TestLargeType::initTestCase()
{
    QVERIFY(scaled(100) > 150);
    m_server.answerWith([](const HttpRequest &request) {
        const bool isSignIn = request.target.startsWith("/auth/v1/token");
        return isSignIn ? Service().answer(request) : HttpAnswer::whole(400, reason);
    });
    signInAs(u"camille@exemple.fr"_s);
}

void TestLargeType::everyControlOfASheetIsReachableAndWhole_data()
{
    QTest::addColumn<Make>("make");
    QTest::addColumn<bool>("fails");
    const Make detail = [](QWidget *window) {
        return new EventDetailView(longEvent(), Calendar::current(), window);
    };
    const Make question = [](QWidget *window) { return new DeleteConfirmation({}, window); };
    const Make signUp = [](QWidget *window) { return new LoginView(AuthMode::signUp, window); };
    const Make add = [](QWidget *window) { return new AddEventView({}, {}, window); };
    const Make edit = [](QWidget *window) { return new AddEventView(longEvent(), {}, window); };
    QTest::newRow("detail") << detail << false;
    QTest::newRow("confirmation") << question << false;
    QTest::newRow("sign-up") << signUp << false;
    QTest::newRow("sign-up, refused") << signUp << true;
    QTest::newRow("add") << add << false;
    QTest::newRow("edit") << edit << false;
    QTest::newRow("edit, refused") << edit << true;
}

void TestLargeType::everyControlOfASheetIsReachableAndWhole()
{
    QFETCH(Make, make);
    QFETCH(bool, fails);
    QWidget window;
    window.resize(520, 360);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    Sheet *sheet = make(&window);
    sheet->open();
    if (fails) {
        if (QLineEdit *email = field(sheet, u"Email"_s)) {
            QTest::keyClicks(email, u"a@b.fr"_s);
            QTest::keyClicks(field(sheet, u"Mot de passe"_s), u"secret"_s);
        }
        sheet->findChild<PrimaryButton *>()->click();
        QTRY_VERIFY(sheet->findChild<ErrorText *>()->isVisible());
        QTest::qWait(0);
    }
    QTRY_VERIFY(sheet->card().bottom() + 1 <= 360 - 16);
    const auto controls = controlsOf(sheet);
    QVERIFY(controls.size() >= 3);
    QScrollBar *bar = sheet->findChild<QScrollArea *>()->verticalScrollBar();
    for (QWidget *control : controls) {
        const QString name = control->accessibleName();
        if (control->focusPolicy() != Qt::NoFocus && control->isEnabled()) {
            bar->setValue(0);
            control->setFocus(Qt::TabFocusReason);
        }
        // What takes no focus is scrolled to.
        for (int value = 0; !isWhole(control) && value <= bar->maximum(); value += 8)
            bar->setValue(value);
        QVERIFY2(isWhole(control), qPrintable(name));
        const QRect place(control->mapTo(sheet, QPoint()), control->size());
        QVERIFY2(sheet->card().contains(place), qPrintable(name));
        if (const auto *button = qobject_cast<StyledButton *>(control))
            QVERIFY2(button->toolTip().isEmpty(), qPrintable(name));
    }
}

void TestLargeType::sheetsGrowWithTheTypeUpToTheSides()
{
    QWidget window;
    window.resize(520, 360);
    window.show();
    LoginView narrow(AuthMode::signIn, &window);
    narrow.open();
    QCOMPARE(narrow.card().width(), 520 - 32);
    window.resize(1200, 700);
    QTRY_COMPARE(narrow.card().width(), scaled(360));
    QVERIFY(narrow.card().width() > 540);
}

void TestLargeType::labelsOfTheSignInFormBreakNoWord()
{
    QWidget window;
    window.resize(520, 360);
    window.show();
    LoginView form(AuthMode::signUp, &window);
    form.open();
    const auto labels = form.findChildren<TextLabel *>();
    QVERIFY(!labels.isEmpty());
    for (const TextLabel *label : labels) {
        const auto words = label->text().split(u' ');
        for (const QString &word : words) {
            const QFontMetricsF metrics(label->font());
            QVERIFY2(metrics.horizontalAdvance(word) <= label->width(), qPrintable(word));
        }
    }
    const auto buttons = form.findChildren<QAbstractButton *>();
    for (const QAbstractButton *button : buttons)
        QVERIFY2(button->width() >= button->sizeHint().width(), qPrintable(button->text()));
}

int main(int argc, char *argv[])
{
    const LargeType desktop;
    return runWithService<TestLargeType>(argc, argv);
}

#include "test_large_type.moc"
