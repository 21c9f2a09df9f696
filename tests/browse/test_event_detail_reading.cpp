// The detail as it is read: its measures, by finger, and what can be taken along of it.

#include "app/ButtonStyles.h"
#include "browse/EventDetailView.h"
#include "browse/EventMeta.h"
#include "browse/TagChips.h"
#include "controls/LinkLabel.h"
#include "controls/SymbolLabel.h"
#include "controls/TextLabel.h"
#include "look/Accessibility.h"
#include "look/Fonts.h"
#include "support/Finger.h"

#include <QApplication>
#include <QClipboard>
#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

Event fullEvent()
{
    Event event;
    event.id = u"1"_s;
    event.titre = u"Marché de <b>Noël</b>"_s;
    event.description = u"Une trentaine\nd’artisans."_s;
    event.date_texte = u"samedi 5"_s;
    event.heure_texte = u"10:00"_s;
    event.lieu = u"Place de l’Église"_s;
    event.organise_par = u"Morvelle Animation"_s;
    event.contact_email = u"contact@exemple.fr"_s;
    event.link = u"https://exemple.fr"_s;
    event.tags = QStringList{u"Repas"_s};
    return event;
}

/// The detail of an event over a window that has the keyboard.
struct Detail {
    QWidget window;
    EventDetailView *sheet;

    explicit Detail(const Event &event, QSize size = {760, 620})
    {
        window.resize(size);
        window.show();
        sheet = new EventDetailView(event, Calendar(u"fr_FR"_s, u"Europe/Paris"_s), &window);
        sheet->open();
        if (!QTest::qWaitForWindowActive(sheet))
            qFatal("the detail does not come to the front");
        QCoreApplication::processEvents();
    }

    QScrollArea *area() const { return sheet->findChild<QScrollArea *>(); }
    QScrollBar *bar() const { return area()->verticalScrollBar(); }
    /// What stands in the text, from top to bottom.
    QList<QWidget *> lines() const
    {
        auto lines = area()->widget()->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
        lines.removeIf([](const QWidget *line) { return !line->isVisible(); });
        std::ranges::sort(lines, {}, [](const QWidget *line) { return line->y(); });
        return lines;
    }
    /// All that can be selected, in the order of the keyboard.
    QList<QWidget *> texts() const
    {
        QList<QWidget *> found;
        const auto widgets = area()->widget()->findChildren<QWidget *>();
        for (QWidget *widget : widgets) {
            if (qobject_cast<TextLabel *>(widget) || qobject_cast<SymbolLabel *>(widget))
                found.append(widget);
        }
        return found;
    }
    QPoint inWindow(const QWidget *widget, QPoint at) const
    {
        return widget->mapTo(widget->window(), at);
    }
};

Event longEvent()
{
    Event event = fullEvent();
    event.description = u"Chacun apporte un bol et les voisins des histoires. "_s.repeated(150);
    return event;
}

} // namespace

class TestEventDetailReading : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installAccessibility(); }

    void theCardHasTheMeasuresOfTheDesign()
    {
        const Detail detail(fullEvent());
        QCOMPARE(detail.sheet->card().width(), 480);
        const auto lines = detail.lines();
        QCOMPARE(lines.size(), 7);
        QCOMPARE(lines.first()->pos(), QPoint(16, 16));
        for (qsizetype i = 1; i < lines.size(); ++i)
            QCOMPARE(lines[i]->y() - (lines[i - 1]->y() + lines[i - 1]->height()), 12);
        QCOMPARE(lines.first()->width(), 480 - 2 * 16);
    }

    void howeverLittleThereIsToReadItIs320High()
    {
        Event event = fullEvent();
        event = Event();
        event.titre = u"Marché"_s;
        const Detail detail(event);
        QCOMPARE(detail.area()->height(), 320);
    }

    void aLongListOfOrganisersIsReadToItsEnd()
    {
        Event event = fullEvent();
        event.organise_par = u"l’école, la mairie, le comité des fêtes et la chorale"_s.repeated(3);
        const Detail detail(event);
        const auto labels = detail.area()->widget()->findChildren<SymbolLabel *>();
        const SymbolLabel *mail = labels.last();
        const SymbolLabel *organisers = labels[labels.size() - 2];
        QVERIFY(organisers->text().contains(u"chorale"));
        QVERIFY(!organisers->isCut());
        QVERIFY(organisers->height() >= 2 * mail->height());
    }

    void theTextsAreSetInTheTypeOfTheDesign()
    {
        const Detail detail(fullEvent());
        const auto texts = detail.area()->widget()->findChildren<TextLabel *>();
        QCOMPARE(texts.size(), 2);
        QCOMPARE(texts[0]->font(), appFont(22, QFont::DemiBold));
        QCOMPARE(texts[1]->font(), appFont(13));
        const auto labels = detail.area()->widget()->findChildren<SymbolLabel *>();
        QCOMPARE(labels.size(), 5);
        for (const SymbolLabel *label : labels)
            QCOMPARE(label->font(), appFont(12));
        QFont link = appFont(12, QFont::DemiBold);
        link.setUnderline(true);
        QCOMPARE(detail.sheet->findChild<LinkLabel *>()->font(), link);
    }

    void everyTextCanBeCopiedByKeyboard()
    {
        const Detail detail(fullEvent());
        QStringList copied;
        const auto texts = detail.texts();
        detail.sheet->setFocus();
        for (QWidget *text : texts) {
            text->setFocus(Qt::TabFocusReason);
            QVERIFY(text->hasFocus());
            QTest::keyClick(text, Qt::Key_C, Qt::ControlModifier);
            copied.append(QGuiApplication::clipboard()->text());
        }
        QCOMPARE(copied,
                 QStringList({u"Marché de <b>Noël</b>"_s, u"Une trentaine\nd’artisans."_s,
                              u"samedi 5"_s, u"10:00"_s, u"Place de l’Église"_s,
                              u"Organisé par Morvelle Animation"_s, u"contact@exemple.fr"_s}));
    }

    void theTabKeyGoesThroughTheTextsInTheirOrder()
    {
        const Detail detail(fullEvent());
        const auto texts = detail.texts();
        texts.first()->setFocus(Qt::TabFocusReason);
        for (qsizetype i = 1; i < texts.size(); ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), texts[i]);
        }
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QVERIFY(qobject_cast<LinkLabel *>(QApplication::focusWidget()));
    }

    void theContactAddressIsTakenByADoubleClick()
    {
        const Detail detail(fullEvent());
        QWidget *mail = detail.texts().last();
        QTest::mouseDClick(mail, Qt::LeftButton, {}, {60, 8});
        QTest::keyClick(mail, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), u"contact@exemple.fr"_s);
    }

    void theReaderStillReadsLabels()
    {
        const Detail detail(fullEvent());
        const auto texts = detail.texts();
        QList<QAccessible::Role> roles;
        for (QWidget *text : texts) {
            const auto *reader = QAccessible::queryAccessibleInterface(text);
            QVERIFY(!reader->text(QAccessible::Name).isEmpty());
            roles.append(reader->role());
        }
        QCOMPARE(roles.takeFirst(), QAccessible::Heading);
        QCOMPARE(roles, QList<QAccessible::Role>(6, QAccessible::StaticText));
    }

    void theKeyboardScrollsFromAText()
    {
        const Detail detail(longEvent());
        QVERIFY(detail.bar()->maximum() > 0);
        detail.texts().first()->setFocus(Qt::TabFocusReason);
        QTest::keyClick(detail.texts().first(), Qt::Key_PageDown);
        QVERIFY(detail.bar()->value() > 0);
        QTest::keyClick(detail.texts().first(), Qt::Key_End);
        QCOMPARE(detail.bar()->value(), detail.bar()->maximum());
        QTest::keyClick(detail.texts().first(), Qt::Key_Home);
        QCOMPARE(detail.bar()->value(), 0);
    }

    void theKeyboardScrollsFromAButtonToo()
    {
        const Detail detail(longEvent());
        const auto buttons = detail.sheet->findChildren<QAbstractButton *>();
        QVERIFY(buttons.size() >= 2);
        for (QAbstractButton *button : buttons) {
            detail.bar()->setValue(0);
            button->setFocus(Qt::TabFocusReason);
            detail.bar()->setValue(0);
            QTest::keyClick(button, Qt::Key_Down);
            QVERIFY(detail.bar()->value() > 0);
            QTest::keyClick(button, Qt::Key_End);
            QCOMPARE(detail.bar()->value(), detail.bar()->maximum());
            QTest::keyClick(button, Qt::Key_Up);
            QVERIFY(detail.bar()->value() < detail.bar()->maximum());
            QVERIFY(button->hasFocus());
        }
    }

    void aClickIntoALongTextMovesNothing()
    {
        const Detail detail(longEvent());
        detail.bar()->setValue(detail.bar()->maximum() / 2);
        const int value = detail.bar()->value();
        QWidget *text = detail.texts()[1];
        QVERIFY(text->height() > 2 * detail.area()->height());
        const QPoint middle = detail.area()->viewport()->rect().center();
        const QPoint at =
            text->mapFrom(detail.area()->widget(),
                          detail.area()->widget()->mapFrom(detail.area()->viewport(), middle));
        QTest::mouseClick(text, Qt::LeftButton, {}, at);
        QVERIFY(text->hasFocus());
        QCOMPARE(detail.bar()->value(), value);
    }

    void aFingerScrollsTheText()
    {
        const Detail detail(longEvent());
        Finger finger(detail.sheet->window());
        const QWidget *view = detail.area()->viewport();
        finger.drag(detail.inWindow(view, {200, 280}), detail.inWindow(view, {200, 80}));
        const int value = detail.bar()->value();
        QVERIFY2(value > 170 && value <= 200, qPrintable(QString::number(value)));
        // It scrolls, and selects nothing.
        QVERIFY(detail.sheet->isVisible());
        QGuiApplication::clipboard()->setText(u"before"_s);
        QTest::keyClick(detail.texts()[1], Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), u"before"_s);
    }

    void aThrowCarriesOn()
    {
        const Detail detail(longEvent());
        QVERIFY(detail.bar()->maximum() > 500);
        Finger finger(detail.sheet->window());
        const QWidget *view = detail.area()->viewport();
        finger.flick(detail.inWindow(view, {200, 280}), detail.inWindow(view, {200, 80}));
        QTRY_VERIFY(detail.bar()->value() > 300); // the finger went 200
    }
};

QTEST_MAIN(TestEventDetailReading)
#include "test_event_detail_reading.moc"
