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

// Nothing here is timed: this is how long a machine may be busy with other things.
#define EVENTUALLY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, 90'000)

/// A sheet over the window, for somebody who sees neither.
class TestScreenReaderSheet : public QObject {
    Q_OBJECT

public:
    explicit TestScreenReaderSheet(const ReaderDesktop &desktop)
        : m_desktop(desktop)
    {
    }

private Q_SLOTS:
    void init();
    void cleanup();

    void underASheetNothingIsFoundAndNothingThatWasFoundIsPressed();

private:
    Object window() const { return m_program->object().child(0); }
    Object dialog(const QString &name) const { return window().find(Role::Dialog, name); }

    const ReaderDesktop &m_desktop;
    std::unique_ptr<HttpServer> m_service;
    std::unique_ptr<ReaderProgram> m_program;
};

void TestScreenReaderSheet::init()
{
    m_service = std::make_unique<HttpServer>();
    QJsonArray rows;
    for (int i = 0; i < 60; ++i)
        rows.append(row(u"Soirée %1"_s.arg(i), 1 + i, {{u"user_id"_s, QJsonValue()}}));
    m_service->answer(reply(rows));
    m_program = std::make_unique<ReaderProgram>(m_desktop.bus(), *m_service);
    EVENTUALLY(m_program->list().isValid());
    EVENTUALLY(window().has(State::Active));
}

void TestScreenReaderSheet::cleanup()
{
    QVERIFY(m_program && m_program->isRunning());
    m_program.reset();
    m_service.reset();
}

void TestScreenReaderSheet::underASheetNothingIsFoundAndNothingThatWasFoundIsPressed()
{
    const QString press = u"Press"_s;
    const Object list = m_program->list();
    const Object first = list.child(1);
    const Object second = list.child(2);
    const Object last = list.child(list.childCount() - 1); // out of view
    QCOMPARE(last.name(), u"Soirée 59"_s);
    const QList<Object> held{second,
                             last,
                             first.find(Role::PushButton, u"Modifier"_s),
                             window().find(Role::PushButton, u"Ajouter un compte"_s),
                             window().find(Role::PushButton, u"Compte"_s),
                             window().find(Role::PageTab, u"Passés"_s)};
    const auto before = window().childCount();
    QVERIFY(before > 1);

    QVERIFY(first.act(press));
    EVENTUALLY(dialog(u"Soirée 0"_s).isValid());
    const Object sheet = dialog(u"Soirée 0"_s);
    QVERIFY(sheet.has(State::Modal));
    EVENTUALLY(sheet.has(State::Focused));
    QCOMPARE(window().children(), QList<Object>{sheet});
    QCOMPARE(sheet.parent(), window());
    QCOMPARE(sheet.indexInParent(), 0);

    const auto requests = m_service->requests().size();
    for (const Object &object : held) {
        QVERIFY(object.isValid());
        QVERIFY(!object.act(press));
        object.grabFocus();
        QVERIFY(!object.has(State::Focused));
    }
    QVERIFY(sheet.has(State::Focused));
    QCOMPARE(window().children(), QList<Object>{sheet});
    QCOMPARE(m_service->requests().size(), requests);

    QVERIFY(sheet.find(Role::PushButton, u"Fermer"_s).act(press));
    EVENTUALLY(window().childCount() == before);
    EVENTUALLY(first.has(State::Focused));
    QVERIFY(second.act(press));
    EVENTUALLY(dialog(u"Soirée 1"_s).isValid());
}

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const ReaderDesktop desktop;
    TestScreenReaderSheet test(desktop);
    return QTest::qExec(&test, argc, argv);
}
#include "test_screen_reader_sheet.moc"
