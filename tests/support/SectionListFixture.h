#pragma once

#include "look/Colors.h"
#include "sectionlist/SectionList.h"
#include "sectionlist/SectionListAccessible.h"

#include <QAbstractButton>
#include <QApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

/// One row of a test's list.
struct TestItem {
    QString id;
    int height = 100; ///< own height, at any width; with `wraps`, that of 700 px of width
    bool wraps = false;
    bool hasButton = true;
    bool operator==(const TestItem &) const = default;
};

/// A row of a colour and one button.
class TestRow : public SectionListRow {
    Q_OBJECT

public:
    static inline int alive = 0;
    static inline int fills = 0;
    static inline int measures = 0;

    TestRow()
        : m_button(new QPushButton(this))
    {
        ++alive;
        m_button->setText(u"x"_s);
    }
    ~TestRow() override { --alive; }
    Q_DISABLE_COPY_MOVE(TestRow)

    void show(const TestItem &item)
    {
        ++fills;
        m_item = item;
        m_button->setVisible(item.hasButton);
        setAccessibleName(item.id);
    }

    int heightFor(int width) const override
    {
        ++measures;
        return m_item.wraps ? m_item.height * 700 / std::max(width, 1) : m_item.height;
    }

    QList<QWidget *> buttons() const override { return {m_button}; }
    QPushButton *button() const { return m_button; }
    const QString &id() const { return m_item.id; }

protected:
    void resizeEvent(QResizeEvent *) override
    {
        m_button->setGeometry(contentRect().right() - 24, contentRect().top() + 6, 24, 24);
    }

private:
    TestItem m_item;
    QPushButton *m_button;
};

/// How much of a widget and what is in it was painted.
class PaintCounter : public QObject {
    Q_OBJECT

public:
    explicit PaintCounter(QWidget *widget) { widget->installEventFilter(this); }

    int area = 0; ///< in pixels

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            for (const QRect &rect : static_cast<QPaintEvent *>(event)->region())
                area += rect.width() * rect.height();
        }
        return QObject::eventFilter(watched, event);
    }
};

/// A list in a shown window, with a button before it and one after it.
class ListWindow : public QWidget {
    Q_OBJECT

public:
    ListWindow(int width = 728, int height = 481)
        : before(new QPushButton(u"before"_s, this))
        , list(new SectionList([] { return new TestRow; }, this))
        , after(new QPushButton(u"after"_s, this))
    {
        installSectionListAccessibility();
        QApplication::setPalette(applicationPalette(ColorScheme::Light));
        auto *column = new QVBoxLayout(this);
        column->setContentsMargins(0, 0, 0, 0);
        column->setSpacing(0);
        column->addWidget(before);
        column->addWidget(list, 1);
        column->addWidget(after);
        connect(list, &SectionList::rowActivated, this,
                [this](int row) { activated.append(ids().at(row)); });
        before->setFixedHeight(30);
        after->setFixedHeight(30);
        resize(width, height + 60);
        QWidget::show();
        activateWindow();
        before->setFocus();
        QTest::mouseMove(windowHandle(), QPoint(3, 3));
        QCoreApplication::processEvents();
    }

    QPushButton *before;
    SectionList *list;
    QPushButton *after;
    QStringList activated;

    /// Sections as "title" -> items, in this order.
    void setSections(QList<std::pair<QString, QList<TestItem>>> sections)
    {
        m_items.clear();
        SectionListContent content;
        for (const auto &[title, items] : std::as_const(sections)) {
            content.sections.append({title, int(items.size())});
            m_items += items;
        }
        content.rowId = [items = m_items](int row) { return items.at(row).id; };
        content.fill = [items = m_items](SectionListRow &row, int index) {
            static_cast<TestRow &>(row).show(items.at(index));
        };
        list->setContent(std::move(content));
        QCoreApplication::processEvents();
    }

    /// Rows "0", "1"... in sections of `perSection`, of heights that vary.
    void setRows(int count, int perSection = 10)
    {
        QList<std::pair<QString, QList<TestItem>>> sections;
        for (int row = 0; row < count; ++row) {
            if (row % perSection == 0)
                sections.append({u"Section %1"_s.arg(row / perSection), {}});
            sections.last().second.append({QString::number(row), heightOf(row), false, true});
        }
        setSections(sections);
    }

    static int heightOf(int row) { return 60 + (row * 37) % 90; }

    QStringList ids() const
    {
        QStringList ids;
        for (const auto &item : m_items)
            ids.append(item.id);
        return ids;
    }

    TestRow *row(int index) const { return static_cast<TestRow *>(list->widgetOf(index)); }
    TestRow *row(const QString &id) const { return row(int(ids().indexOf(id))); }
    /// Where the row's top stands in the list.
    int topOf(int index) const { return row(index)->mapTo(list, QPoint()).y(); }
    int topOf(const QString &id) const { return topOf(int(ids().indexOf(id))); }

    /// The first row of which something is seen below a heading at the top of the list.
    QString eyeRow() const
    {
        for (int y = 30; y < list->height(); ++y) {
            if (const auto row = list->rowAt({50, y}))
                return ids().at(*row);
        }
        return {};
    }

    /// Rows in view, top to bottom, must follow one another without gap or overlap.
    bool isSeamless() const
    {
        std::optional<int> former;
        for (int y = 0; y < list->height() - 1; ++y) {
            const auto row = list->rowAt({50, y});
            if (!row)
                continue;
            const QRect rect(list->widgetOf(*row)->mapTo(list, QPoint()),
                             list->widgetOf(*row)->size());
            if (former && *row != *former && *row != *former + 1)
                return false;
            if (!rect.contains(50, y) || !list->widgetOf(*row)->isVisible())
                return false;
            former = row;
        }
        return former.has_value();
    }

    /// The ids of rows that are shown though the list holds no such row any more.
    QStringList leftovers() const
    {
        QStringList found;
        const auto widgets = list->findChildren<TestRow *>();
        for (TestRow *widget : widgets) {
            bool isHeld = false;
            for (int row = 0; row < list->rowCount(); ++row)
                isHeld |= list->widgetOf(row) == widget;
            if (!isHeld && !widget->isHidden())
                found.append(widget->id());
        }
        return found;
    }

    void wheel(QPoint angle, QPoint pixels = {})
    {
        const QPointF at(list->mapTo(this, QPoint(100, 100)));
        QWheelEvent event(at, mapToGlobal(at), pixels, angle, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&event); // else Qt does not hand it on to parents
        qApp->notify(windowHandle(), &event);
        QCoreApplication::processEvents();
    }

    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(windowHandle(), key, modifiers);
        QCoreApplication::processEvents();
    }

    QPoint inWindow(int row, QPoint at) const { return list->widgetOf(row)->mapTo(this, at); }
    void click(int row, QPoint at = {60, 40}, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(windowHandle(), button, {}, inWindow(row, at));
        QCoreApplication::processEvents();
    }
    void hover(QPoint inList)
    {
        QTest::mouseMove(windowHandle(), list->mapTo(this, inList));
        QCoreApplication::processEvents();
    }

    QImage picture() const { return list->grab().toImage(); }

private:
    QList<TestItem> m_items;
};
