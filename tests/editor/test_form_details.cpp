// What the event form says, sends and draws in its single parts.

#include "editor/TagMenuView.h"
#include "look/Colors.h"
#include "support/FormTest.h"
#include "support/Picture.h"
#include "support/Sent.h"
#include "support/ViewMain.h"

#include <QApplication>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using namespace FormTest;

class TestFormDetails : public QObject {
    Q_OBJECT

    HttpServer &m_server;

public:
    explicit TestFormDetails(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void initTestCase() { signIn(m_server); }

    void anEmptyFieldShowsAnExample_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("example");
        const auto row = [](const QString &name, const QString &example) {
            QTest::newRow(qPrintable(name)) << name << example;
        };
        row(u"Titre"_s, u"Ex: Atelier création"_s);
        row(u"Lieu"_s, u"Ex: Salle Vaudrelle"_s);
        row(u"Lien"_s, u"Ex: https://www.exemple.fr"_s);
        row(u"Email de contact"_s, u"Ex: camille@exemple.fr"_s);
    }

    void anEmptyFieldShowsAnExample()
    {
        QFETCH(QString, name);
        const Form form;
        form.retype(name, {});
        QCOMPARE(form.field(name)->text(), QString());
        QTEST(form.field(name)->placeholderText(), "example");
    }

    void aChangeIsSentAsTheMemberWhoMakesIt()
    {
        Event event = fullEvent();
        for (const auto &owner :
             {std::optional(u"elle"_s), std::optional<QString>(), std::optional(u"moi"_s)}) {
            event.user_id = owner;
            m_server.answer(HttpAnswer::whole(204, ""));
            const Form form(event);
            const Sent sent(m_server);
            form.pressSave();
            QTRY_COMPARE(sent.count(), 1);
            QTRY_VERIFY(!form.isOpen());
            QCOMPARE(sent.request().method, "PATCH");
            QCOMPARE(sent.body().value(u"user_id"_s).toString(), u"moi"_s);
        }
    }

    void chosenTagsAreWrittenAsTextAndTheInvitationQuietly()
    {
        for (const auto scheme : {ColorScheme::Light, ColorScheme::Dark}) {
            QApplication::setPalette(applicationPalette(scheme));
            TagMenuView picker(u"Tags"_s, {u"Sport"_s});
            const auto ink = [&picker] {
                constexpr int ratio = 8;
                picker.resize(picker.sizeHint());
                const QImage image = picture(picker, ratio);
                // Without the chevron at the right.
                const QRect text(QPoint(8, 4) * ratio,
                                 QSize(picker.width() - 8 - 30, picker.height() - 8) * ratio);
                return inkOf(image, text, image.pixelColor(text.topLeft()));
            };
            COMPARE_COLORS(ink(), secondaryText(picker.palette()));
            picker.setSelection(TagSet({u"Sport"_s, u"Repas"_s}));
            COMPARE_COLORS(ink(), primaryText(picker.palette()));
            picker.setSelection({});
            COMPARE_COLORS(ink(), secondaryText(picker.palette()));
        }
    }
};

int main(int argc, char *argv[])
{
    return runWithService<TestFormDetails>(argc, argv);
}

#include "test_form_details.moc"
