// Where the text of an error stands within the room it has. What can be done with it, and how high
// it is, are in test_controls_text.cpp.

#include "controls/ErrorText.h"
#include "look/Colors.h"
#include "look/Fonts.h"
#include "support/Picture.h"

#include <QApplication>
#include <QScrollBar>
#include <QTest>
#include <QTextCursor>
#include <QTextEdit>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString reason = u"Une explication qui ne veut pas finir. "_s.repeated(8);

QTextEdit *viewOf(const ErrorText &error)
{
    return error.findChild<QTextEdit *>();
}

/// The bottom of the last line that is seen, as far as the view's own height.
qreal lastBottom(QTextEdit *view)
{
    QTextCursor cursor(view->document());
    qreal bottom = 0;
    do {
        const QRect line = view->cursorRect(cursor);
        if (line.top() < view->viewport()->height())
            bottom = line.bottom();
    } while (cursor.movePosition(QTextCursor::Down));
    return bottom;
}

/// From the first column with ink to behind the last.
int inkWidth(const QImage &image, const QColor &ground)
{
    int first = image.width();
    int last = -1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) != ground) {
                first = std::min(first, x);
                last = std::max(last, x);
            }
        }
    }
    return last + 1 - first;
}

} // namespace

class TestErrorText : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setPalette(applicationPalette(ColorScheme::Light)); }

    void anErrorThatIsGivenItsRoomLateShowsItsBeginning_data();
    void anErrorThatIsGivenItsRoomLateShowsItsBeginning();
    void anotherErrorIsReadFromItsBeginning();
    void thePlaceIsKeptWhenTheWindowChangesItsSize();
    void aLineThatDoesNotFitWholeIsLeftToScrolling();
    void noLetterIsCutAtAnErrorsLeftEdge_data();
    void noLetterIsCutAtAnErrorsLeftEdge();
};

void TestErrorText::anErrorThatIsGivenItsRoomLateShowsItsBeginning_data()
{
    QTest::addColumn<bool>("isShownFirst");
    QTest::newRow("shown, then told") << true;
    QTest::newRow("told, then shown") << false;
}

void TestErrorText::anErrorThatIsGivenItsRoomLateShowsItsBeginning()
{
    QFETCH(bool, isShownFirst);
    // As in a form: less than a line until its sheet is laid out again.
    for (int before = 0; before < lineHeight(appFont(13)); before += 3) {
        QWidget window;
        window.resize(320, 100);
        ErrorText error(&window);
        error.resize(300, before);
        if (!isShownFirst)
            error.hide();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        error.setText(reason);
        error.show();
        error.resize(300, 2 * lineHeight(error.font()));
        const QScrollBar *bar = viewOf(error)->verticalScrollBar();
        QTRY_VERIFY(bar->maximum() > 0);
        QCOMPARE(bar->value(), 0);
    }
}

void TestErrorText::anotherErrorIsReadFromItsBeginning()
{
    ErrorText error;
    error.resize(300, 2 * lineHeight(error.font()));
    error.setText(reason);
    error.show();
    QScrollBar *bar = viewOf(error)->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 0);
    bar->setValue(bar->maximum());
    error.setText(reason + reason);
    QCOMPARE(bar->value(), 0);
}

void TestErrorText::thePlaceIsKeptWhenTheWindowChangesItsSize()
{
    const int line = lineHeight(appFont(13));
    ErrorText error;
    error.resize(300, 2 * line);
    error.setText(reason);
    error.show();
    QScrollBar *bar = viewOf(error)->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 2 * line);
    bar->setValue(line);
    error.resize(300, 3 * line);
    QCOMPARE(bar->value(), line);
    error.resize(300, 2 * line);
    QCOMPARE(bar->value(), line);
}

void TestErrorText::aLineThatDoesNotFitWholeIsLeftToScrolling()
{
    const int line = lineHeight(appFont(13));
    ErrorText error;
    error.setText(reason);
    error.resize(300, 2 * line);
    error.show();
    for (int height = line; height < 4 * line; ++height) {
        error.resize(300, height);
        QTextEdit *view = viewOf(error);
        QVERIFY(view->verticalScrollBar()->maximum() > 0);
        QVERIFY2(lastBottom(view) <= view->viewport()->height(),
                 qPrintable(QString::number(height)));
        QVERIFY(view->height() > height - line);
    }
}

void TestErrorText::noLetterIsCutAtAnErrorsLeftEdge_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("in the first line") << u"Jeudi"_s;
    QTest::newRow("in the second") << u"\nJeudi"_s;
}

void TestErrorText::noLetterIsCutAtAnErrorsLeftEdge()
{
    QFETCH(QString, text);
    constexpr int room = 20;
    for (const int size : {11, 13, 17, 24, 40}) {
        ErrorText error;
        error.setFont(appFont(size));
        error.setText(text);
        error.resize(400, error.heightForWidth(400));
        error.show();
        QCOMPARE(viewOf(error)->font(), appFont(size));
        const QColor ground = windowColor(error.palette());
        // The same line where nothing ends.
        QImage whole(400, 4 * size, QImage::Format_ARGB32_Premultiplied);
        whole.fill(ground);
        QPainter painter(&whole);
        painter.setFont(appFont(size));
        painter.setPen(red(error.palette()));
        painter.drawText(QPointF(room, 2 * size), u"Jeudi"_s);
        painter.end();
        QCOMPARE(inkWidth(picture(error), ground), inkWidth(whole, ground));
    }
}

QTEST_MAIN(TestErrorText)
#include "test_error_text.moc"
