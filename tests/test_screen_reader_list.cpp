#include "platform/Calendar.h"
#include "support/ReaderProgram.h"
#include "support/WindowTest.h"

#include <memory>

using AtSpi::Object;
using AtSpi::Role;
using AtSpi::State;
using WindowTest::reply;
using WindowTest::row;

// Nothing here is timed: this is how long a machine may be busy with other things.
#define EVENTUALLY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, 90'000)

namespace {

const QString press = QStringLiteral("Press");

QJsonObject fullRow(const QString &title)
{
    return row(
        title, 3,
        {
            {QStringLiteral("description"), QStringLiteral("Chacun apporte un bol.")},
            {QStringLiteral("date_texte"), QStringLiteral("samedi 6 mai")},
            {QStringLiteral("heure_texte"), QStringLiteral("19:00")},
            {QStringLiteral("lieu"), QStringLiteral("Salle Vaudrelle")},
            {QStringLiteral("organise_par"), QStringLiteral("Morvelle Animation")},
            {QStringLiteral("contact_email"), QStringLiteral("a@exemple.fr")},
            {QStringLiteral("link"), QStringLiteral("https://exemple.fr/a?b=1&c=2")},
            {QStringLiteral("tags"), QJsonArray{QStringLiteral("Repas"), QStringLiteral("Sport")}},
            {QStringLiteral("user_id"), QStringLiteral("somebody")},
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
    m_program = std::make_unique<ReaderProgram>(m_desktop, *m_service);
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
        titles.append(QStringLiteral("Soirée %1").arg(i));
        const QJsonObject event = row(titles.last(), 1 + i);
        rows.append(event);
        const auto start = QDateTime::fromString(
            event.value(QStringLiteral("starts_at")).toString(), Qt::ISODateWithMs);
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
        rows.append(row(QStringLiteral("Soirée %1").arg(i), 1 + i));
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
        QCOMPARE(found.name(), QStringLiteral("Soirée %1").arg(reached));
        QCOMPARE(found.indexInParent(), index);
        ++reached;
    }
    QCOMPARE(reached, count);
}

void TestScreenReaderList::aRowReadsItsTitleDateTimePlaceAndTags()
{
    show({fullRow(QStringLiteral("Soirée <b>soupe</b>"))});
    QCOMPARE(m_list.child(0).role(), Role::Heading);
    const Object item = m_list.child(1);
    QCOMPARE(item.role(), Role::ListItem);
    QCOMPARE(item.name(), QStringLiteral("Soirée <b>soupe</b>"));
    QCOMPARE(item.description(),
             QStringLiteral("samedi 6 mai, 19:00, Salle Vaudrelle, Repas, Sport"));
    QCOMPARE(ReaderProgram::heard(item),
             (QStringList{
                 QStringLiteral("item Soirée <b>soupe</b>"),
                 QStringLiteral("label Soirée <b>soupe</b>"),
                 QStringLiteral("label Chacun apporte un bol."),
                 QStringLiteral("label samedi 6 mai"),
                 QStringLiteral("label 19:00"),
                 QStringLiteral("label Salle Vaudrelle"),
                 QStringLiteral("label Repas, Sport"),
             }));
}

void TestScreenReaderList::aRowOpensIsReadClosesAndHasTheFocusAgain()
{
    show({row(QStringLiteral("Marché"), 1), fullRow(QStringLiteral("Soirée soupe"))});
    const Object item = m_list.child(m_list.childCount() - 1);
    QVERIFY(item.act(press));
    Object sheet;
    EVENTUALLY((sheet = program().find(Role::Dialog, QStringLiteral("Soirée soupe"))).isValid());
    EVENTUALLY(sheet.has(State::Active));
    QCOMPARE(ReaderProgram::heard(sheet),
             (QStringList{
                 QStringLiteral("dialog Soirée soupe"),
                 QStringLiteral("heading Soirée soupe"),
                 QStringLiteral("label Chacun apporte un bol."),
                 QStringLiteral("label samedi 6 mai"),
                 QStringLiteral("label 19:00"),
                 QStringLiteral("label Salle Vaudrelle"),
                 QStringLiteral("label Organisé par Morvelle Animation"),
                 QStringLiteral("label a@exemple.fr"),
                 QStringLiteral("link Ouvrir le lien"),
                 QStringLiteral("label Repas, Sport"),
                 QStringLiteral("button Fermer"),
             }));
    QCOMPARE(sheet.find(Role::Link).description(), QStringLiteral("https://exemple.fr/a?b=1&c=2"));
    QVERIFY(item.has(State::Selected));

    AtSpi::Listener listener(m_desktop.bus());
    QVERIFY(sheet.find(Role::PushButton, QStringLiteral("Fermer")).act(press));
    EVENTUALLY(!program().find(Role::Dialog).isValid());
    EVENTUALLY(item.has(State::Focused));
    EVENTUALLY(listener.hasHeard(item, QStringLiteral("focused")));
    QVERIFY(!item.has(State::Selected));
}

void TestScreenReaderList::anEventWithoutOwnerOffersToBeChangedAndRemoved()
{
    show({row(QStringLiteral("Marché"), 1), fullRow(QStringLiteral("Soirée soupe"))});
    const Object free = m_list.child(1);
    for (const QString &name : {QStringLiteral("Modifier"), QStringLiteral("Supprimer")}) {
        const Object button = free.find(Role::PushButton, name);
        QVERIFY2(button.isValid(), qPrintable(name));
        QCOMPARE(button.description(), QString());
        QVERIFY(button.actions().contains(press));
    }
    const Object owned = m_list.child(m_list.childCount() - 1);
    QCOMPARE(owned.name(), QStringLiteral("Soirée soupe"));
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
