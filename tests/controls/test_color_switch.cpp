#include "app/ButtonStyles.h"
#include "controls/CalendarPopup.h"
#include "controls/DateField.h"
#include "controls/ErrorText.h"
#include "controls/Menu.h"
#include "controls/Popover.h"
#include "controls/PopupButton.h"
#include "controls/SegmentedControl.h"
#include "controls/TextEditor.h"
#include "controls/TextField.h"
#include "controls/TimeField.h"
#include "look/Colors.h"
#include "support/Picture.h"

#include <QTest>
#include <QVBoxLayout>

#include <functional>
#include <initializer_list>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// A window with something open in it.
class Scene {
public:
    /// Makes the parts in the window and says which widget is to be looked at.
    using Build = std::function<QWidget *(QWidget &)>;

    explicit Scene(const Build &build)
    {
        window.resize(420, 300);
        new QVBoxLayout(&window);
        window.show();
        looked = build(window);
        window.layout()->activate();
    }
    ~Scene() { looked->close(); }
    Q_DISABLE_COPY_MOVE(Scene)

    QWidget window;
    QWidget *looked;
};

QWidget *openMenu(QWidget &window)
{
    auto *button =
        new PopupButton(u"Organisateur"_s, {u"Mairie"_s, u"Autre"_s, u"École"_s}, &window);
    window.layout()->addWidget(button);
    window.layout()->activate();
    button->setValue(u"Autre"_s);
    button->menu()->open(Menu::OpenedBy::Keyboard);
    return button->menu();
}

QWidget *openCalendar(QWidget &window)
{
    auto *field = new DateField(u"Date"_s, QLocale(u"fr_FR"_s), &window);
    window.layout()->addWidget(field);
    window.layout()->activate();
    field->setDate(QDate(2026, 11, 14));
    field->openCalendar();
    return field->findChild<CalendarPopup *>();
}

QWidget *openPopover(QWidget &window)
{
    auto *anchor = new SecondaryButton(u"Compte"_s, &window);
    window.layout()->addWidget(anchor);
    window.layout()->activate();
    auto *popover = new Popover(anchor);
    popover->setContent(new SecondaryButton(u"Se déconnecter"_s));
    popover->open();
    return popover;
}

QWidget *fillForm(QWidget &window)
{
    auto *error = new ErrorText(&window);
    error->setText(u"Impossible"_s);
    auto *editor = new TextEditor(u"Description"_s, &window);
    for (QWidget *part : std::initializer_list<QWidget *>{
             new SegmentedControl(u"Mode"_s, {u"Se connecter"_s, u"Créer"_s}, &window),
             new TextField(u"Titre"_s, &window), editor,
             new DateField(u"Date"_s, QLocale(u"fr_FR"_s), &window),
             new TimeField(u"Heure"_s, QLocale(u"fr_FR"_s), TimeField::Hours::TwentyFour, &window),
             error, new PrimaryButton(u"Publier"_s, &window)})
        window.layout()->addWidget(part);
    return &window;
}

struct Colors {
    ColorScheme scheme;
    Contrast contrast;
};

} // namespace

Q_DECLARE_METATYPE(Scene::Build)
Q_DECLARE_METATYPE(Colors)

/// The desktop turns dark or light while something is open.
class TestColorSwitch : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsOpenLooksAsIfOpenedAfterTheSwitch_data();
    void whatIsOpenLooksAsIfOpenedAfterTheSwitch();
};

void TestColorSwitch::whatIsOpenLooksAsIfOpenedAfterTheSwitch_data()
{
    const Colors light{ColorScheme::Light, Contrast::Usual};
    const Colors dark{ColorScheme::Dark, Contrast::Usual};
    const Colors strong{ColorScheme::Light, Contrast::More};
    const Colors darkStrong{ColorScheme::Dark, Contrast::More};
    QTest::addColumn<Scene::Build>("build");
    QTest::addColumn<Colors>("before");
    QTest::addColumn<Colors>("after");
    const QList<std::pair<QByteArray, Scene::Build>> scenes{
        {"menu", openMenu},
        {"calendar", openCalendar},
        {"popover", openPopover},
        {"form", fillForm},
    };
    for (const auto &[name, build] : scenes) {
        QTest::newRow(name + ", to dark") << build << light << dark;
        QTest::newRow(name + ", to light") << build << dark << light;
        QTest::newRow(name + ", to more contrast") << build << light << strong;
        QTest::newRow(name + ", dark, to more contrast") << build << dark << darkStrong;
        QTest::newRow(name + ", to less contrast") << build << strong << light;
    }
}

void TestColorSwitch::whatIsOpenLooksAsIfOpenedAfterTheSwitch()
{
    QFETCH(Scene::Build, build);
    QFETCH(Colors, before);
    QFETCH(Colors, after);
    QImage wanted;
    QImage former;
    for (const auto &[colors, image] : {std::pair{after, &wanted}, std::pair{before, &former}}) {
        QApplication::setPalette(applicationPalette(colors.scheme, colors.contrast));
        const Scene scene(build);
        QVERIFY(QTest::qWaitForWindowExposed(scene.looked));
        *image = picture(*scene.looked);
    }
    QVERIFY(wanted != former);

    const Scene scene(build);
    QVERIFY(QTest::qWaitForWindowExposed(scene.looked));
    QCOMPARE(picture(*scene.looked), former);
    QApplication::setPalette(applicationPalette(after.scheme, after.contrast));
    QVERIFY(scene.looked->isVisible());
    QTRY_COMPARE(picture(*scene.looked), wanted);
}

QTEST_MAIN(TestColorSwitch)
#include "test_color_switch.moc"
