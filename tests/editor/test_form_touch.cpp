// The event form under a finger, in a window too low for all of it.

#include "backend/SupabaseClient.h"
#include "controls/TextEditor.h"
#include "support/Finger.h"
#include "support/FormTest.h"
#include "support/OwnHome.h"

#include <QApplication>
#include <QScrollArea>
#include <QScrollBar>

using namespace Qt::StringLiterals;
using namespace FormTest;

namespace {

struct LowForm : Form {
    LowForm()
        : Form(fullEvent())
    {
        window->resize(520, 360);
        QCoreApplication::processEvents();
    }

    QScrollArea *area() const
    {
        const auto areas = view->findChildren<QScrollArea *>();
        return areas.isEmpty() ? nullptr : areas.first();
    }
    QScrollBar *bar() const { return area()->verticalScrollBar(); }
    QPoint inWindow(const QWidget *widget, QPoint at) const
    {
        return widget->mapTo(widget->window(), at);
    }
};

} // namespace

class TestFormTouch : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFingerScrollsTheFormWhereverItComesDown_data()
    {
        QTest::addColumn<QString>("on");
        QTest::newRow("a caption") << QString();
        QTest::newRow("a field") << u"Titre"_s;
        QTest::newRow("the description") << u"Description"_s;
    }

    void aFingerScrollsTheFormWhereverItComesDown()
    {
        QFETCH(QString, on);
        const LowForm form;
        QTRY_VERIFY(form.bar()->maximum() > 100);
        Finger finger(form.view->window());
        QPoint from = form.inWindow(form.area()->viewport(), {200, 4});
        if (!on.isEmpty()) {
            const auto *field = form.named<>(on);
            from = form.inWindow(field, field->rect().center());
        }
        finger.drag(from, from - QPoint(0, 80));
        QVERIFY2(form.bar()->value() > 50, qPrintable(QString::number(form.bar()->value())));
        QCOMPARE(form.field(u"Titre"_s)->text(), u"Bal"_s);
        QCOMPARE(form.view->findChild<TextEditor *>()->wholeText(), u"Deux orchestres"_s);
    }

    void aThrowCarriesOn()
    {
        const LowForm form;
        QTRY_VERIFY(form.bar()->maximum() > 150);
        Finger finger(form.view->window());
        const QPoint from = form.inWindow(form.area()->viewport(), {200, 100});
        finger.flick(from, from - QPoint(0, 60));
        QTRY_VERIFY(form.bar()->value() > 100); // the finger went 60
    }

    void aTapGoesToTheField()
    {
        const LowForm form;
        QTRY_VERIFY(form.bar()->maximum() > 100);
        Finger finger(form.view->window());
        auto *description = form.view->findChild<TextEditor *>();
        QVERIFY(!description->hasFocus());
        finger.tap(form.inWindow(description, {100, 20}));
        QTRY_VERIFY(description->hasFocus());
    }
};

int main(int argc, char *argv[])
{
    const OwnHome home;
    const QApplication application(argc, argv);
    qputenv("SUPABASE_URL", "http://127.0.0.1:1");
    qputenv("SUPABASE_KEY", "public-key");
    TestFormTouch test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_form_touch.moc"
