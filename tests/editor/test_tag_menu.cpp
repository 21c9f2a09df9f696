#include "controls/Menu.h"
#include "editor/TagMenuView.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "support/Choosing.h"
#include "support/LabelledHeight.h"
#include "support/Picture.h"

#include <QApplication>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// A form of 420 with a tag picker, whose owner shows every change.
struct Scene {
    QWidget window;
    TagSet selection;
    TagMenuView *picker = new TagMenuView(
        u"Tags"_s,
        {u"Vie du village"_s, u"Repas"_s, u"Sport"_s, u"Jeune public"_s, u"Conférence"_s}, &window);

    explicit Scene(const QStringList &tags = {})
        : selection(tags)
    {
        auto *column = new QVBoxLayout(&window);
        column->setContentsMargins(0, 0, 0, 0);
        column->addWidget(picker, 0, Qt::AlignLeft);
        QObject::connect(picker, &TagMenuView::selectionChanged, &window,
                         [this](const TagSet &changed) {
                             selection = changed;
                             picker->setSelection(selection);
                         });
        picker->setSelection(selection);
        window.resize(420, 100);
        window.show();
    }

    QAction *item(const QString &tag) const
    {
        const auto items = picker->menu()->actions();
        for (QAction *item : items) {
            if (item->text() == tag)
                return item;
        }
        return nullptr;
    }
    void choose(const QString &tag) const { chooseByClick(picker, tag); }
};

} // namespace

class TestTagMenu : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        installAccessibility();
        QApplication::setPalette(applicationPalette(ColorScheme::Light));
    }

    void withoutTagsItAsksForSome();
    void tagsAreSummedUpByCharacterCode();
    void aCheckedTagIsRemovedAndAddedBack();
    void theMenuListsTheOfferedTagsInTheirOrder();
    void theMenuClosesAfterEachChoice();
    void aTagThatIsNotOfferedIsShownAndStays();
    void aTagOfAnotherSpellingIsTheSameTag();
    void theKeyboardChoosesToo();
    void thePickerIsAsWideAsItsSummary();
    void aLongSummaryIsCutAndNeverWidensTheForm();
    void theOwnerDecidesWhatIsShown();
};

void TestTagMenu::withoutTagsItAsksForSome()
{
    Scene it;
    QCOMPARE(it.picker->label(), u"Choisir des tags"_s);
    const QPalette palette = it.picker->palette();
    bool hasSecondary = false;
    const QImage image = picture(it.window);
    for (int x = 10; x < 100; ++x) {
        for (int y = 0; y < image.height(); ++y) {
            hasSecondary = hasSecondary || alike(image.pixelColor(x, y), secondaryText(palette));
            QVERIFY(!alike(image.pixelColor(x, y), primaryText(palette)));
        }
    }
    QVERIFY(hasSecondary);
}

void TestTagMenu::tagsAreSummedUpByCharacterCode()
{
    const Scene it;
    it.choose(u"Sport"_s);
    it.choose(u"Repas"_s);
    QCOMPARE(it.picker->label(), u"Repas, Sport"_s);
    QCOMPARE(it.selection.sorted(), (QStringList{u"Repas"_s, u"Sport"_s}));
}

void TestTagMenu::aCheckedTagIsRemovedAndAddedBack()
{
    const Scene it({u"Sport"_s, u"Repas"_s});
    QVERIFY(it.item(u"Sport"_s)->isChecked());
    it.choose(u"Sport"_s);
    QCOMPARE(it.picker->label(), u"Repas"_s);
    QVERIFY(!it.item(u"Sport"_s)->isChecked());
    it.choose(u"Sport"_s);
    QCOMPARE(it.picker->label(), u"Repas, Sport"_s);
    QVERIFY(it.item(u"Sport"_s)->isChecked());
}

void TestTagMenu::theMenuListsTheOfferedTagsInTheirOrder()
{
    const Scene it({u"Atelier"_s});
    QStringList listed;
    const auto items = it.picker->menu()->actions();
    for (const QAction *item : items)
        listed.append(item->text());
    QCOMPARE(listed,
             (QStringList{u"Vie du village"_s, u"Repas"_s, u"Sport"_s, u"Jeune public"_s,
                          u"Conférence"_s}));
}

void TestTagMenu::theMenuClosesAfterEachChoice()
{
    const Scene it;
    it.choose(u"Sport"_s);
    QVERIFY(!it.picker->menu()->isVisible());
}

void TestTagMenu::aTagThatIsNotOfferedIsShownAndStays()
{
    const Scene it({u"Jeune public"_s, u"Atelier"_s});
    QCOMPARE(it.picker->label(), u"Atelier, Jeune public"_s);
    QVERIFY(!it.item(u"Atelier"_s));
    it.choose(u"Jeune public"_s);
    QCOMPARE(it.picker->label(), u"Atelier"_s);
}

void TestTagMenu::aTagOfAnotherSpellingIsTheSameTag()
{
    const Scene it({u"Confe\u0301rence"_s});
    QVERIFY(it.item(u"Conférence"_s)->isChecked());
    QCOMPARE(it.picker->label(), u"Confe\u0301rence"_s);
    it.choose(u"Conférence"_s);
    QVERIFY(it.selection.isEmpty());
}

void TestTagMenu::theKeyboardChoosesToo()
{
    const Scene it({u"Repas"_s});
    QTest::keyClick(it.picker, Qt::Key_Space);
    QCOMPARE(it.picker->menu()->activeAction(), it.item(u"Repas"_s));
    QTest::keyClick(it.picker->menu(), Qt::Key_Down);
    QTest::keyClick(it.picker->menu(), Qt::Key_Space);
    QCOMPARE(it.selection.sorted(), (QStringList{u"Repas"_s, u"Sport"_s}));
}

void TestTagMenu::thePickerIsAsWideAsItsSummary()
{
    const Scene it({u"Sport"_s});
    const int text = qCeil(QFontMetricsF(it.picker->font()).horizontalAdvance(u"Sport"_s));
    QTRY_COMPARE(it.picker->width(), 10 + text + 8 + 11 + 10);
    it.choose(u"Repas"_s);
    QTRY_VERIFY(it.picker->width() > 10 + text + 8 + 11 + 10);
    QCOMPARE(it.picker->height(), labelledHeight());
}

void TestTagMenu::aLongSummaryIsCutAndNeverWidensTheForm()
{
    QStringList tags;
    for (int i = 0; i < 2000; ++i)
        tags.append(u"Une étiquette assez longue n° %1"_s.arg(i, 4, 10, QLatin1Char('0')));
    const Scene it(tags);
    QTRY_COMPARE(it.picker->width(), 420);
    QCOMPARE(it.window.width(), 420);
    QVERIFY(it.window.minimumSizeHint().width() < 420);
    QVERIFY(it.picker->toolTip().contains(tags.first()));
    QCOMPARE(it.picker->accessibleDescription(), tags.join(u", "_s));
}

void TestTagMenu::theOwnerDecidesWhatIsShown()
{
    TagMenuView picker(u"Tags"_s, {u"Sport"_s});
    picker.setSelection(TagSet({u"Repas"_s}));
    TagSet told;
    connect(&picker, &TagMenuView::selectionChanged, &picker,
            [&told](const TagSet &changed) { told = changed; });
    picker.menu()->actions().constFirst()->trigger();
    QCOMPARE(told.sorted(), (QStringList{u"Repas"_s, u"Sport"_s}));
    QCOMPARE(picker.label(), u"Repas"_s);
}

QTEST_MAIN(TestTagMenu)
#include "test_tag_menu.moc"
