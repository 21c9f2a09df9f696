#include "browse/EventMeta.h"
#include "browse/EventRow.h"
#include "browse/FairShare.h"
#include "browse/TagChips.h"
#include "controls/SymbolLabel.h"
#include "controls/TextLabel.h"
#include "look/Colors.h"

#include <QAbstractButton>
#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

Event sample()
{
    Event event;
    event.id = u"1"_s;
    event.titre = u"Atelier création"_s;
    event.starts_at = Instant{1790845920000}; // 2026-10-01T09:12 GMT
    return event;
}

const Calendar &paris()
{
    static const Calendar calendar(u"fr_FR"_s, u"Europe/Paris"_s);
    return calendar;
}

/// The texts that are seen, from top to bottom and left to right.
QStringList seen(const QWidget &row)
{
    QStringList texts;
    const auto widgets = row.findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        if (!widget->isVisibleTo(&row))
            continue;
        if (const auto *label = qobject_cast<const TextLabel *>(widget))
            texts.append(label->text());
        if (const auto *label = qobject_cast<const SymbolLabel *>(widget))
            texts.append(label->text());
    }
    for (QString &text : texts)
        text.replace(QChar(0x202F), QLatin1Char(' ')).replace(QChar(0xA0), QLatin1Char(' '));
    return texts;
}

struct Row {
    QList<QString> edited, deleted;
    EventRow widget{[this](const Event &event) { edited.append(event.id); },
                    [this](const Event &event) { deleted.append(event.id); }};

    explicit Row(const Event &event, bool isOwner = false)
    {
        widget.setEvent(event, isOwner, paris());
        widget.resize(700, 200);
        widget.show();
    }
};

} // namespace

class TestEventRow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void theDayAsStoredWinsOverTheInstant();
    void withoutADayTheInstantIsWrittenInTheUsersWords();
    void anEventWithNeitherShowsNoDate();
    void emptyTextsTakeNoPlace();
    void blanksCountAsText();
    void textsAreShownLetterByLetter();
    void onlyTheOwnerSeesTheButtons();
    void theButtonsCallTheirActionAndNothingElse();
    void aRecycledRowActsOnWhatItShowsNow();
    void aRowIsAsHighAsItsLines();
    void theButtonsStandAtTheRightEdgeOfTheText();
    void aScreenReaderHearsTheWholeRow();
    void whereThereIsNoRoomThePlaceGivesWayFirst();
    void aDateTooLongForTheLineSharesIt();
    void withoutATimeThePlaceFollowsTheDate();
    void roomIsSharedFairly();
    void noTagsNoTagLine();
    void manyTagsNeverWidenTheRow();
};

void TestEventRow::initTestCase()
{
    QApplication::setPalette(applicationPalette(ColorScheme::Light));
}

void TestEventRow::theDayAsStoredWinsOverTheInstant()
{
    Event event = sample();
    event.date_texte = u"Samedi 28 novembre"_s;
    QCOMPARE(seen(Row(event).widget),
             QStringList({u"Atelier création"_s, u"Samedi 28 novembre"_s}));
}

void TestEventRow::withoutADayTheInstantIsWrittenInTheUsersWords()
{
    Event event = sample();
    event.date_texte = QString();
    QCOMPARE(seen(Row(event).widget),
             QStringList({u"Atelier création"_s, u"1 oct. 2026 à 11:12"_s}));
}

void TestEventRow::anEventWithNeitherShowsNoDate()
{
    Event event = sample();
    event.starts_at.reset();
    QCOMPARE(seen(Row(event).widget), QStringList(u"Atelier création"_s));
}

void TestEventRow::emptyTextsTakeNoPlace()
{
    Event event = sample();
    const int plain = Row(event).widget.heightFor(500);
    event.description = QString();
    event.heure_texte = QString();
    event.lieu = QString();
    event.tags = QStringList();
    QCOMPARE(seen(Row(event).widget).size(), 2);
    QCOMPARE(Row(event).widget.heightFor(500), plain);
}

void TestEventRow::blanksCountAsText()
{
    Event event = sample();
    event.heure_texte = u" "_s;
    QCOMPARE(seen(Row(event).widget).size(), 3);
}

void TestEventRow::textsAreShownLetterByLetter()
{
    Event event = sample();
    event.titre = u"<b>Fête</b> & &amp; bal"_s;
    event.description = u"<i>a</i>"_s;
    event.lieu = u"&Salle"_s;
    event.date_texte = u"<u>demain</u>"_s;
    QCOMPARE(seen(Row(event).widget),
             QStringList(
                 {u"<b>Fête</b> & &amp; bal"_s, u"<i>a</i>"_s, u"<u>demain</u>"_s, u"&Salle"_s}));
}

void TestEventRow::onlyTheOwnerSeesTheButtons()
{
    Row mine(sample(), true);
    Row other(sample(), false);
    for (const QWidget *button : mine.widget.buttons())
        QVERIFY(button->isVisible());
    for (const QWidget *button : other.widget.buttons())
        QVERIFY(!button->isVisible());
}

void TestEventRow::theButtonsCallTheirActionAndNothingElse()
{
    Row row(sample(), true);
    int opened = 0;
    connect(&row.widget, &EventRow::activated, this, [&] { ++opened; });
    const auto buttons = row.widget.buttons();
    QCOMPARE(buttons[0]->accessibleName(), u"Modifier"_s);
    QCOMPARE(buttons[1]->accessibleName(), u"Supprimer"_s);

    QTest::mouseClick(buttons[0], Qt::LeftButton);
    QCOMPARE(row.edited, QList<QString>({u"1"_s}));
    QVERIFY(row.deleted.isEmpty());
    QTest::mouseClick(buttons[1], Qt::LeftButton);
    QCOMPARE(row.deleted, QList<QString>({u"1"_s}));
    QTest::keyClick(buttons[0], Qt::Key_Space);
    QCOMPARE(row.edited.size(), 2);
    QCOMPARE(opened, 0);
}

void TestEventRow::aRecycledRowActsOnWhatItShowsNow()
{
    Row row(sample(), true);
    Event next = sample();
    next.id = u"2"_s;
    row.widget.setEvent(next, true, paris());
    QTest::mouseClick(row.widget.buttons()[1], Qt::LeftButton);
    QCOMPARE(row.deleted, QList<QString>({u"2"_s}));
}

void TestEventRow::aRowIsAsHighAsItsLines()
{
    Event event = sample();
    Row row(event);
    const int title = row.widget.findChild<TextLabel *>()->heightForWidth(500);
    const int meta = row.widget.findChild<EventMeta *>()->sizeHint().height();
    const int chips = row.widget.findChild<TagChips *>()->sizeHint().height();
    QCOMPARE(row.widget.heightFor(500), 6 + title + 6 + meta + 6);
    event.tags = QStringList(u"Repas"_s);
    row.widget.setEvent(event, false, paris());
    QCOMPARE(row.widget.heightFor(500), 6 + title + 6 + meta + 6 + chips + 6);
    event.description = u"Une ligne"_s;
    row.widget.setEvent(event, false, paris());
    const int one = row.widget.heightFor(500);
    event.description = u"a\nb\nc"_s;
    row.widget.setEvent(event, false, paris());
    const int three = row.widget.heightFor(500);
    QVERIFY(three > one);
    event.description = u"a\nb\nc\nd\ne"_s;
    row.widget.setEvent(event, false, paris());
    QCOMPARE(row.widget.heightFor(500), three);
}

void TestEventRow::theButtonsStandAtTheRightEdgeOfTheText()
{
    Row row(sample(), true);
    const QRect content = row.widget.contentRect();
    const QRect bin = row.widget.buttons()[1]->geometry();
    const QRect pencil = row.widget.buttons()[0]->geometry();
    QCOMPARE(bin.size(), QSize(24, 24));
    // The icon of 16 in its target of 24 ends where the text column does.
    QCOMPARE(bin.right() - 4, content.right());
    QCOMPARE(pencil.right() + 1, bin.left());
    QCOMPARE(bin.top(), content.top() + 6);
}

void TestEventRow::aScreenReaderHearsTheWholeRow()
{
    Event event = sample();
    event.date_texte = u"2026-11-20"_s;
    event.heure_texte = u"19:00"_s;
    event.lieu = u"La Grange"_s;
    event.tags = QStringList({u"Repas"_s, u"Spectacle"_s});
    const Row row(event);
    QCOMPARE(row.widget.accessibleName(), u"Atelier création"_s);
    QCOMPARE(row.widget.accessibleDescription(),
             u"2026-11-20, 19:00, La Grange, Repas, Spectacle"_s);
}

void TestEventRow::whereThereIsNoRoomThePlaceGivesWayFirst()
{
    Event event = sample();
    event.date_texte = u"Vendredi 27 novembre 2026"_s;
    event.heure_texte = u"20:30"_s;
    event.lieu = u"Grande salle Vaudrelle, derrière l’église, au fond du jardin"_s;
    EventMeta meta;
    meta.setEvent(event, paris());
    meta.resize(meta.sizeHint());
    meta.show();
    const auto labels = meta.findChildren<SymbolLabel *>();
    QVERIFY(!labels[0]->isCut() && !labels[1]->isCut() && !labels[2]->isCut());
    meta.resize(meta.sizeHint().width() - 100, meta.height());
    QVERIFY(!labels[0]->isCut() && !labels[1]->isCut() && labels[2]->isCut());
    QVERIFY(labels[2]->geometry().right() < meta.width());
}

void TestEventRow::withoutATimeThePlaceFollowsTheDate()
{
    Event event = sample();
    event.lieu = u"Salle Vaudrelle"_s;
    EventMeta meta;
    meta.setEvent(event, paris());
    meta.resize(meta.sizeHint());
    meta.show();
    const auto labels = meta.findChildren<SymbolLabel *>();
    QVERIFY(!labels[1]->isVisible());
    QCOMPARE(labels[2]->x(), labels[0]->x() + labels[0]->width() + 12);
    QVERIFY(!labels[2]->isCut());
    QCOMPARE(meta.sizeHint().width(), labels[2]->x() + labels[2]->width());
}

void TestEventRow::aDateTooLongForTheLineSharesIt()
{
    Event event = sample();
    event.date_texte = QString(200, QLatin1Char('x'));
    event.heure_texte = QString(200, QLatin1Char('y'));
    event.lieu = QString(200, QLatin1Char('z'));
    EventMeta meta;
    meta.setEvent(event, paris());
    meta.resize(300, meta.sizeHint().height());
    meta.show();
    int right = 0;
    for (const SymbolLabel *label : meta.findChildren<SymbolLabel *>()) {
        QVERIFY(label->isCut());
        QCOMPARE(label->width(), (300 - 24) / 3);
        right = label->geometry().right();
    }
    QVERIFY(right < 300);
}

void TestEventRow::roomIsSharedFairly()
{
    QCOMPARE(fairShare({}, 10), QList<int>());
    QCOMPARE(fairShare({5, 6}, 20), QList<int>({5, 6}));
    QCOMPARE(fairShare({100, 2, 100}, 32), QList<int>({15, 2, 15}));
    QCOMPARE(fairShare({7, 8}, -3), QList<int>({0, 0}));
}

void TestEventRow::noTagsNoTagLine()
{
    Event event = sample();
    const Row absent(event);
    QVERIFY(!absent.widget.findChild<TagChips *>()->isVisible());
    event.tags = QStringList();
    const Row empty(event);
    QVERIFY(!empty.widget.findChild<TagChips *>()->isVisible());
}

void TestEventRow::manyTagsNeverWidenTheRow()
{
    QStringList tags;
    for (int i = 0; i < 10'000; ++i)
        tags.append(u"tag %1"_s.arg(i));
    Event event = sample();
    event.tags = tags;
    Row row(event);
    QCOMPARE(row.widget.findChild<TagChips *>()->minimumSizeHint().width(), 0);
    QCOMPARE(row.widget.findChild<TagChips *>()->width(), row.widget.contentRect().width());
}

QTEST_MAIN(TestEventRow)
#include "test_event_row.moc"
