#include "controls/ErrorText.h"
#include "controls/SymbolLabel.h"
#include "controls/TextLabel.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/Fonts.h"
#include "support/Picture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QScrollBar>
#include <QTest>
#include <QTextEdit>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

const QString pangram = u"Portez ce vieux whisky au juge blond qui fume, puis rentrez. "_s;
constexpr qsizetype million = 1'000'000;

QString nameFor(QWidget &widget)
{
    return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name);
}

QImage pictureOf(const QString &text, int width, int maximumLines = 0)
{
    TextLabel label(text, appFont(13));
    label.setMaximumLines(maximumLines);
    label.resize(width, label.heightForWidth(width));
    return picture(label);
}

/// The widest place with ink, in pixels from the left.
int inkEnd(const QImage &image)
{
    const QColor ground = windowColor(QGuiApplication::palette());
    for (int x = image.width() - 1; x >= 0; --x) {
        for (int y = 0; y < image.height(); ++y) {
            if (!alike(image.pixelColor(x, y), ground))
                return x;
        }
    }
    return -1;
}

} // namespace

class TestControlsText : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        installAccessibility();
        QApplication::setPalette(applicationPalette(ColorScheme::Light));
    }

    void markupIsShownLetterByLetter()
    {
        const QString markup = u"<b>x</b>"_s;
        const int width = TextLabel(markup, appFont(13)).naturalWidth();
        QVERIFY(width > 2 * TextLabel(u"xxx"_s, appFont(13)).naturalWidth());
        QVERIFY(SymbolLabel(Symbol::Clock, markup).naturalWidth()
                > 2 * SymbolLabel(Symbol::Clock, {}).naturalWidth());
        ErrorText error;
        error.setText(markup);
        QCOMPARE(error.findChild<QTextEdit *>()->toPlainText(), markup);
    }

    void aTooltipShowsMarkupLetterByLetterToo()
    {
        TextLabel label(u"<b>gras</b> "_s.repeated(20), appFont(13));
        label.setMaximumLines(1);
        label.resize(60, 18);
        label.show();
        QVERIFY(label.toolTip().contains(u"&lt;b&gt;gras"_s));
    }

    void aLabelIsExactlyAsHighAsItsLines()
    {
        TextLabel label(pangram.repeated(8), appFont(13));
        const int line = lineHeight(appFont(13));
        int last = 0;
        for (const int width : {2000, 700, 400, 200, 90}) {
            const int height = label.heightForWidth(width);
            QCOMPARE(height % line, 0);
            QVERIFY(height >= last);
            last = height;
        }
        QVERIFY(last > 20 * line);
        label.resize(200, label.heightForWidth(200));
        QVERIFY(inkEnd(picture(label)) < 200);
    }

    void aWordTooLongForTheLineBreaksAnywhere()
    {
        const QString word = QString(200, u'm');
        TextLabel label(word, appFont(13));
        QVERIFY(label.heightForWidth(100) > 5 * lineHeight(appFont(13)));
        QVERIFY(!label.isCut());
    }

    void everyKindOfLineBreakBreaks_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("line feed") << u"a\nb"_s;
        QTest::newRow("carriage return, line feed") << u"a\r\nb"_s;
        QTest::newRow("carriage return") << u"a\rb"_s;
        QTest::newRow("line separator") << u"a\u2028b"_s;
        QTest::newRow("paragraph separator") << u"a\u2029b"_s;
    }

    void everyKindOfLineBreakBreaks()
    {
        QFETCH(QString, text);
        TextLabel label(text, appFont(13));
        QCOMPARE(label.heightForWidth(300), 2 * lineHeight(appFont(13)));
        QCOMPARE(label.text(), text);
    }

    void aCutTextEndsInAnEllipsisAndGivesTheWholeElsewhere()
    {
        const QString text = pangram.repeated(8).trimmed();
        TextLabel label(text, appFont(13));
        label.setMaximumLines(3);
        label.resize(200, label.heightForWidth(200));
        label.show();
        QCOMPARE(label.height(), 3 * lineHeight(appFont(13)));
        QVERIFY(label.isCut());
        QVERIFY(label.toolTip().contains(text));
        QCOMPARE(nameFor(label), text);
        QVERIFY(inkEnd(picture(label)) < 200);

        label.resize(2 * label.naturalWidth(), label.height());
        QVERIFY(!label.isCut());
        QVERIFY(label.toolTip().isEmpty());
        QCOMPARE(nameFor(label), text);
    }

    void aTextCutAtItsLineBreakSaysThatItGoesOn()
    {
        const QImage cut = pictureOf(u"un\ndeux"_s, 200, 1);
        QCOMPARE(cut, pictureOf(u"un…"_s, 200));
        QVERIFY(cut != pictureOf(u"un"_s, 200));
    }

    void theLinesBeforeACutAreThoseOfTheWhole()
    {
        const QString text = pangram.repeated(8);
        const int twoLines = 2 * lineHeight(appFont(13));
        const QRect head(0, 0, 200, twoLines);
        QCOMPARE(pictureOf(text, 200, 3).copy(head), pictureOf(text, 200).copy(head));
    }

    void aMillionCharactersAreKeptAndTheirBeginningIsShown_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("one word") << QString(million, u'a');
        QTest::newRow("words") << pangram.repeated(million / pangram.size());
        QTest::newRow("line breaks") << QString(million, u'\n');
        QTest::newRow("marks on one letter") << QString(million, QChar(0x301));
        QTest::newRow("emoji") << u"🎪"_s.repeated(million / 2);
    }

    void aMillionCharactersAreKeptAndTheirBeginningIsShown()
    {
        QFETCH(QString, text);
        for (const int lines : {0, 3}) {
            TextLabel label(text, appFont(13));
            label.setMaximumLines(lines);
            label.resize(300, label.heightForWidth(300));
            label.show();
            QVERIFY(label.isCut());
            QVERIFY(label.height() < 25'000 * lineHeight(appFont(13)));
            QVERIFY(label.toolTip().size() < 30'000);
            QCOMPARE(nameFor(label), text);
            picture(label);
        }
        SymbolLabel symbol(Symbol::MapPin, text);
        symbol.resize(120, 16);
        symbol.show();
        QCOMPARE(nameFor(symbol), text);
        ErrorText error;
        error.setText(text);
        error.resize(300, 100);
        error.show();
        QCOMPARE(error.text(), text);
        picture(error);
    }

    void aLayoutGivesALabelTheHeightThatItsTextTakes()
    {
        QWidget window;
        auto *column = new QVBoxLayout(&window);
        auto *label = new TextLabel(pangram.repeated(4), appFont(13));
        column->addWidget(label);
        column->addStretch();
        window.resize(240, 600);
        window.show();
        QCOMPARE(label->height(), label->heightForWidth(label->width()));
    }

    void aSymbolLabelKeepsItsSymbolAndCutsItsText()
    {
        SymbolLabel label(Symbol::MapPin, u"Grande salle Vaudrelle"_s);
        QCOMPARE(label.sizeHint().height(), lineHeight(appFont(12)));
        QCOMPARE(label.naturalWidth(), 19 + TextLabel(label.text(), appFont(12)).naturalWidth());
        label.resize(label.naturalWidth(), 16);
        label.show();
        QVERIFY(!label.isCut());
        QVERIFY(label.toolTip().isEmpty());
        label.resize(80, 16);
        QVERIFY(label.isCut());
        QVERIFY(label.toolTip().contains(label.text()));
        QCOMPARE(nameFor(label), label.text());
        QVERIFY(inkEnd(picture(label)) < 80);
    }

    void aWrappingSymbolLabelShowsTheWhole()
    {
        SymbolLabel label(Symbol::People, u"Organisé par "_s + pangram);
        label.setWrapping(true);
        QVERIFY(label.heightForWidth(120) >= 3 * lineHeight(appFont(12)));
        QVERIFY(!label.isCut());
    }

    void anErrorIsRedAndCanBeSelectedAndCopied()
    {
        ErrorText error;
        error.setText(u"Échec : HTTP 503"_s);
        error.resize(300, 18);
        error.show();
        const QImage image = picture(error, 4);
        bool hasRed = false;
        for (int x = 0; x < image.width(); ++x)
            hasRed = hasRed || alike(image.pixelColor(x, 36), red(error.palette()));
        QVERIFY(hasRed);

        auto *view = error.findChild<QTextEdit *>();
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, {10, 9});
        QTest::keySequence(view, QKeySequence::Copy);
        QCOMPARE(QGuiApplication::clipboard()->text(), u"Échec"_s);
    }

    void copyingAllOfAnErrorCopiesTheWholeUntouched()
    {
        const QString whole = u"a\u00A0b\r\n"_s + QString(million, u'x');
        ErrorText error;
        error.setText(whole);
        error.resize(300, 100);
        error.show();
        auto *view = error.findChild<QTextEdit *>();
        QTest::keySequence(view, QKeySequence::SelectAll);
        QTest::keySequence(view, QKeySequence::Copy);
        QCOMPARE(QGuiApplication::clipboard()->text(), whole);
    }

    void aLongErrorScrollsInPlaceBeyondItsLines()
    {
        QWidget window;
        auto *column = new QVBoxLayout(&window);
        auto *error = new ErrorText;
        error->setMaximumLines(4);
        error->setText(pangram.repeated(20));
        column->addWidget(error);
        column->addStretch();
        window.resize(300, 400);
        window.show();
        QCOMPARE(error->height(), 4 * lineHeight(appFont(13)));
        QVERIFY(error->findChild<QTextEdit *>()->verticalScrollBar()->maximum() > 0);

        error->setText(u"court"_s);
        QTRY_COMPARE(error->height(), lineHeight(appFont(13)));
        QCOMPARE(error->findChild<QTextEdit *>()->verticalScrollBar()->maximum(), 0);
    }

    void anErrorTakesTheHeightOfItsLines()
    {
        QWidget window;
        auto *column = new QVBoxLayout(&window);
        auto *error = new ErrorText;
        error->setText(pangram.repeated(3));
        column->addWidget(error);
        column->addStretch();
        window.resize(300, 400);
        window.show();
        QCOMPARE(error->height() % lineHeight(appFont(13)), 0);
        QVERIFY(error->height() > lineHeight(appFont(13)));
        QCOMPARE(error->findChild<QTextEdit *>()->verticalScrollBar()->maximum(), 0);
    }

    void anErrorThatHadTooLittleRoomShowsAllWhenItHasEnough()
    {
        // Of all widths some are such that the text just fits without a scroll bar beside it.
        for (int width = 200; width < 300; ++width) {
            ErrorText error;
            error.setText(pangram.repeated(3));
            error.resize(width, 10);
            error.show();
            const auto *bar = error.findChild<QTextEdit *>()->verticalScrollBar();
            QVERIFY(bar->maximum() > 0);
            error.resize(width, error.heightForWidth(width));
            QCOMPARE(bar->maximum(), 0);
            QVERIFY(!bar->isVisible());
        }
    }
};

QTEST_MAIN(TestControlsText)
#include "test_controls_text.moc"
