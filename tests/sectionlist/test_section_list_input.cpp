// The list and the pointer: what opens a row, what only hovers. The keyboard is in
// test_section_list_keys.cpp.

#include "support/SectionListFixture.h"

using namespace Qt::StringLiterals;

class TestSectionListInput : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aClickOpensTheRow();
    void onlyTheLeftButtonOpens();
    void aClickOnAButtonDoesNotOpenTheRow();
    void aPressReleasedElsewhereOpensNothing();
    void hoverFollowsThePointerAndTheScrolledRows();
    void recycledRowsShowNoStaleState();
};

void TestSectionListInput::aClickOpensTheRow()
{
    ListWindow window;
    window.setRows(50);
    window.click(1);
    QCOMPARE(window.activated, QStringList{u"1"_s});
    window.wheel({0, -600});
    window.click(5);
    QCOMPARE(window.activated.last(), u"5"_s);
    QCOMPARE(window.activated.size(), 2);
}

void TestSectionListInput::onlyTheLeftButtonOpens()
{
    ListWindow window;
    window.setRows(50);
    window.click(1, {60, 40}, Qt::RightButton);
    window.click(1, {60, 40}, Qt::MiddleButton);
    QVERIFY(window.activated.isEmpty());
    QVERIFY(!window.row(1)->isPressed());
}

void TestSectionListInput::aClickOnAButtonDoesNotOpenTheRow()
{
    ListWindow window;
    window.setRows(50);
    int pressed = 0;
    connect(window.row(2)->button(), &QPushButton::clicked, this, [&pressed] { ++pressed; });
    const QPoint onButton = window.row(2)->button()->geometry().center();
    window.click(2, onButton);
    QCOMPARE(pressed, 1);
    QVERIFY(window.activated.isEmpty());
    // Pressed on the row and released on its button: neither.
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, window.inWindow(2, {60, 40}));
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, window.inWindow(2, onButton));
    QVERIFY(window.activated.isEmpty());
    QCOMPARE(pressed, 1);
}

void TestSectionListInput::aPressReleasedElsewhereOpensNothing()
{
    ListWindow window;
    window.setRows(50);
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, window.inWindow(1, {60, 40}));
    QVERIFY(window.row(1)->isPressed());
    QTest::mouseMove(window.windowHandle(), window.inWindow(2, {60, 40}));
    QVERIFY(!window.row(1)->isPressed());
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, window.inWindow(2, {60, 40}));
    QVERIFY(window.activated.isEmpty());

    // Under the heading stuck to the top nothing of the row is seen.
    window.wheel({}, {0, -80});
    const QPoint row = window.inWindow(0, {60, window.row(0)->height() - 5});
    QVERIFY(row.y() < window.list->y() + 30);
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, window.inWindow(1, {60, 40}));
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, row);
    QVERIFY(window.activated.isEmpty());

    // A row scrolled away while it is held forgets the press.
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, window.inWindow(2, {60, 40}));
    window.wheel({0, -2400});
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {},
                        window.list->pos() + QPoint(60, 200));
    QVERIFY(window.activated.isEmpty());
}

void TestSectionListInput::hoverFollowsThePointerAndTheScrolledRows()
{
    ListWindow window;
    window.setRows(100);
    const auto hovered = [&window] {
        QStringList rows;
        for (auto *row : window.findChildren<TestRow *>()) {
            if (row->isHovered())
                rows.append(row->id());
        }
        return rows;
    };
    const QPoint at(200, 200);
    window.hover(at);
    for (int step = 0; step < 30; ++step) {
        const auto row = window.list->rowAt(at);
        QCOMPARE(hovered(), row ? QStringList{QString::number(*row)} : QStringList());
        window.wheel({0, -50});
    }
    // Over a row's button the row stays hovered; scrolled from under the pointer, neither does.
    auto *button = window.row(*window.list->rowAt({200, 300}))->button();
    window.hover(button->mapTo(window.list, button->rect().center()));
    QVERIFY(button->underMouse());
    QCOMPARE(hovered().size(), 1);
    window.wheel({0, -60});
    QTRY_VERIFY(!button->underMouse());
    window.hover({50, -10});
    QVERIFY(hovered().isEmpty());
    window.hover({200, 200});
    window.wheel({0, -60});
    window.hover({50, 10}); // on the heading stuck to the top
    QVERIFY(hovered().isEmpty());
}

void TestSectionListInput::recycledRowsShowNoStaleState()
{
    ListWindow window;
    window.setRows(1000);
    window.list->setSelectedRow(u"1"_s);
    window.hover({200, window.topOf(2) + 20});
    QVERIFY(window.row(1)->isSelected());
    QVERIFY(window.row(2)->isHovered());
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, window.inWindow(2, {60, 40}));
    QVERIFY(window.row(2)->isPressed());
    window.key(Qt::Key_Down); // the keyboard's ring besides
    for (int step = 0; step < 60; ++step) {
        window.wheel({0, -120});
        for (auto *row : window.findChildren<TestRow *>()) {
            if (!row->isVisible() || row->geometry().bottom() < 0)
                continue;
            QCOMPARE(row->isSelected(), row->id() == QLatin1String("1"));
            QVERIFY(!row->isPressed() || row->id() == QLatin1String("2"));
            QVERIFY(!row->showsFocus() || row->id() == QLatin1String("3"));
            const auto under = window.list->rowAt({200, 100});
            QVERIFY(!row->isHovered() || !under || window.row(*under) || row->isVisible());
            QCOMPARE(row->accessibleName(), row->id());
        }
    }
    window.list->scrollBar()->setValue(0);
    QCoreApplication::processEvents();
    QVERIFY(window.row(1)->isSelected());
    QVERIFY(!window.row(2)->isPressed());
    QVERIFY(window.row(3)->showsFocus());
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, window.inWindow(2, {60, 40}));
    QVERIFY(window.activated.isEmpty());
}

QTEST_MAIN(TestSectionListInput)
#include "test_section_list_input.moc"
