#include "platform/Calendar.h"
#include "support/ReaderDesktop.h"
#include "support/ReaderProgram.h"
#include "support/WindowTest.h"

#include <memory>

using namespace Qt::StringLiterals;

using AtSpi::Object;
using AtSpi::Role;
using AtSpi::State;
using WindowTest::reply;
using WindowTest::row;

namespace {

const QString press = u"Press"_s;

QJsonObject fullRow(const QString &title)
{
    return row(title, 3,
               {
                   {u"description"_s, u"Chacun apporte un bol."_s},
                   {u"date_texte"_s, u"samedi 6 mai"_s},
                   {u"heure_texte"_s, u"19:00"_s},
                   {u"lieu"_s, u"Salle Vaudrelle"_s},
                   {u"organise_par"_s, u"Morvelle Animation"_s},
                   {u"contact_email"_s, u"a@exemple.fr"_s},
                   {u"link"_s, u"https://exemple.fr/a?b=1&c=2"_s},
                   {u"tags"_s, QJsonArray{u"Repas"_s, u"Sport"_s}},
                   {u"user_id"_s, u"somebody"_s},
               });
}

} // namespace

/// The list of events, and what one does with it, for somebody who does not see it.
class TestScreenReaderList : public QObject {
    Q_OBJECT

public:
    explicit TestScreenReaderList(const ReaderDesktop &desktop)
        : m_desktop(desktop)
    {
    }

private Q_SLOTS:
    void init();
    void cleanup();

    void theReaderGoesFromRowToRowThroughTheWholeList();
    void theFocusFollowsTheReaderThroughTheWholeList();
    void aRowReadsItsTitleDateTimePlaceAndTags();
    void aRowOpensIsReadClosesAndHasTheFocusAgain();
    void anEventWithoutOwnerOffersToBeChangedAndRemoved();

private:
    void show(const QJsonArray &rows);
    Object program() const { return m_program->object(); }

    const ReaderDesktop &m_desktop;
    std::unique_ptr<HttpServer> m_service;
    std::unique_ptr<ReaderProgram> m_program;
    Object m_list;
};

void TestScreenReaderList::init()
{
    m_service = std::make_unique<HttpServer>();
}

void TestScreenReaderList::cleanup()
{
    QVERIFY(m_program && m_program->isRunning());
    m_program.reset();
    m_service.reset();
}

void TestScreenReaderList::show(const QJsonArray &rows)
{
    m_service->answer(reply(rows));
    m_program = std::make_unique<ReaderProgram>(m_desktop.bus(), *m_service);
    EVENTUALLY((m_list = m_program->list()).isValid());
    EVENTUALLY(program().child(0).has(State::Active));
}

void TestScreenReaderList::theReaderGoesFromRowToRowThroughTheWholeList()
{
    constexpr int count = 300;
    QJsonArray rows;
    QStringList titles;
    QStringList months;
    const Calendar calendar = Calendar::current();
    for (int i = 0; i < count; ++i) {
        titles.append(u"Soirée %1"_s.arg(i));
        const QJsonObject event = row(titles.last(), 1 + i);
        rows.append(event);
        const auto start =
            QDateTime::fromString(event.value(u"starts_at"_s).toString(), Qt::ISODateWithMs);
        const QString month = calendar.monthTitle({start.toMSecsSinceEpoch()});
        if (months.isEmpty() || months.last() != month)
            months.append(month);
    }
    show(rows);
    QCOMPARE(m_list.childCount(), count + months.size());

    QStringList readTitles;
    QStringList readMonths;
    int bare = 0;
    for (Object item = m_list.child(0); item.isValid();
         item = item.parent().child(item.indexInParent() + 1)) {
        const Role role = item.role();
        QVERIFY(role == Role::Heading || role == Role::ListItem);
        (role == Role::Heading ? readMonths : readTitles).append(item.name());
        bare += role == Role::ListItem && item.childCount() == 0 ? 1 : 0;
    }
    QCOMPARE(readTitles, titles);
    QCOMPARE(readMonths, months);
    QVERIFY2(bare > count / 2, "the list was to be too long to be in the window as a whole");
}

void TestScreenReaderList::theFocusFollowsTheReaderThroughTheWholeList()
{
    constexpr int count = 300;
    QJsonArray rows;
    for (int i = 0; i < count; ++i)
        rows.append(row(u"Soirée %1"_s.arg(i), 1 + i));
    show(rows);

    int reached = 0;
    for (int index = 0; index < m_list.childCount(); ++index) {
        const Object item = m_list.child(index);
        if (item.role() != Role::ListItem)
            continue;
        QVERIFY(item.grabFocus());
        // The one that the reader has in hand, and the one it finds there now.
        QVERIFY(item.has(State::Focused));
        QVERIFY(item.has(State::Showing));
        const Object found = m_list.child(index);
        QVERIFY(found.has(State::Focused));
        QCOMPARE(found.name(), u"Soirée %1"_s.arg(reached));
        QCOMPARE(found.indexInParent(), index);
        ++reached;
    }
    QCOMPARE(reached, count);
}

void TestScreenReaderList::aRowReadsItsTitleDateTimePlaceAndTags()
{
    show({fullRow(u"Soirée <b>soupe</b>"_s)});
    QCOMPARE(m_list.child(0).role(), Role::Heading);
    const Object item = m_list.child(1);
    QCOMPARE(item.role(), Role::ListItem);
    QCOMPARE(item.name(), u"Soirée <b>soupe</b>"_s);
    QCOMPARE(item.description(), u"samedi 6 mai, 19:00, Salle Vaudrelle, Repas, Sport"_s);
    QCOMPARE(ReaderProgram::heard(item),
             (QStringList{
                 u"item Soirée <b>soupe</b>"_s,
                 u"label Soirée <b>soupe</b>"_s,
                 u"label Chacun apporte un bol."_s,
                 u"label samedi 6 mai"_s,
                 u"label 19:00"_s,
                 u"label Salle Vaudrelle"_s,
                 u"label Repas, Sport"_s,
             }));
}

void TestScreenReaderList::aRowOpensIsReadClosesAndHasTheFocusAgain()
{
    show({row(u"Marché"_s, 1), fullRow(u"Soirée soupe"_s)});
    const Object item = m_list.child(m_list.childCount() - 1);
    QVERIFY(item.act(press));
    Object sheet;
    EVENTUALLY((sheet = program().find(Role::Dialog, u"Soirée soupe"_s)).isValid());
    QVERIFY(sheet.has(State::Modal));
    QCOMPARE(ReaderProgram::heard(sheet),
             (QStringList{
                 u"dialog Soirée soupe"_s,
                 u"heading Soirée soupe"_s,
                 u"label Chacun apporte un bol."_s,
                 u"label Date\u00A0: samedi 6 mai"_s,
                 u"label Heure\u00A0: 19:00"_s,
                 u"label Lieu\u00A0: Salle Vaudrelle"_s,
                 u"label Organisé par Morvelle Animation"_s,
                 u"label a@exemple.fr"_s,
                 u"link Ouvrir le lien"_s,
                 u"label Repas, Sport"_s,
                 u"button Fermer"_s,
             }));
    QCOMPARE(sheet.description(), u"samedi 6 mai, 19:00, Salle Vaudrelle"_s);
    QCOMPARE(sheet.find(Role::Link).description(), u"https://exemple.fr/a?b=1&c=2"_s);
    QVERIFY(item.has(State::Selected));

    AtSpi::Listener listener(m_desktop.bus());
    QVERIFY(sheet.find(Role::PushButton, u"Fermer"_s).act(press));
    EVENTUALLY(!program().find(Role::Dialog).isValid());
    EVENTUALLY(item.has(State::Focused));
    EVENTUALLY(listener.hasHeard(item, u"focused"_s));
    QVERIFY(!item.has(State::Selected));
}

void TestScreenReaderList::anEventWithoutOwnerOffersToBeChangedAndRemoved()
{
    show({row(u"Marché"_s, 1), fullRow(u"Soirée soupe"_s)});
    const Object free = m_list.child(1);
    for (const QString &name : {u"Modifier"_s, u"Supprimer"_s}) {
        const Object button = free.find(Role::PushButton, name);
        QVERIFY2(button.isValid(), qPrintable(name));
        QCOMPARE(button.description(), QString());
        QVERIFY(button.actions().contains(press));
    }
    const Object owned = m_list.child(m_list.childCount() - 1);
    QCOMPARE(owned.name(), u"Soirée soupe"_s);
    QVERIFY(!owned.find(Role::PushButton).isValid());
}

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const ReaderDesktop desktop;
    TestScreenReaderList test(desktop);
    return QTest::qExec(&test, argc, argv);
}
#include "test_screen_reader_list.moc"
