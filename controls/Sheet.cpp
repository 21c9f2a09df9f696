#include "controls/Sheet.h"

#include "controls/EndOfDoubleClick.h"
#include "controls/SheetBody.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/Fonts.h"
#include "look/KeyboardFocus.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLayout>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int clearOfWindow = 16; ///< below and at the sides
constexpr int clearOfFields = 12; ///< of what stays put, where fields are hidden under it
constexpr int footerLine = 1;
constexpr int tallestField = 80; ///< it stays to be seen whole

int heightOf(const QWidget *part, int width)
{
    if (!part)
        return 0;
    if (const auto *layout = part->layout()) {
        return layout->hasHeightForWidth() ? layout->totalHeightForWidth(width)
                                           : layout->totalSizeHint().height();
    }
    return part->hasHeightForWidth() ? part->heightForWidth(width) : part->sizeHint().height();
}

} // namespace

Sheet::Sheet(int cardWidth, QWidget *over)
    : QWidget(over->window())
    , m_cardWidth(scaled(cardWidth))
    , m_window(over->window())
    , m_body(new SheetBody(this))
{
    // Not shown along with a window that is yet to be.
    hide();
    setAttribute(Qt::WA_NoMousePropagation);
    setAccessibleRole(this, QAccessible::Dialog);
    m_body->hide();
    m_window->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, const QWidget *now) {
        if (m_bodyContent && m_bodyContent->isAncestorOf(now))
            m_body->reveal(now);
    });
    connect(qApp, &QGuiApplication::commitDataRequest, this, [this] { m_sessionEnds = true; });
}

Sheet::~Sheet()
{
    m_below.reset();
}

void Sheet::setHeader(QWidget *header)
{
    m_header = header;
    header->setParent(this);
    // Screen readers go by this order, in which the body is older.
    header->lower();
    watch(header);
}

void Sheet::setBody(QWidget *body, int leastHeight)
{
    m_bodyContent = body;
    m_leastBody = leastHeight;
    m_body->setWidget(body);
    body->setAutoFillBackground(false);
    m_body->show();
    watch(body);
}

void Sheet::setFooter(QWidget *footer)
{
    m_footer = footer;
    footer->setParent(this);
    watch(footer);
}

void Sheet::setFooterLine(bool line)
{
    m_footerLine = line;
    place();
}

void Sheet::setHolds(bool holds)
{
    m_holds = holds;
    m_sessionEnds = false;
}

void Sheet::setWayOut(QWidget *button)
{
    m_wayOut = button;
}

void Sheet::setInitialFocus(QWidget *widget)
{
    m_initialFocus = widget;
}

void Sheet::open()
{
    if (m_isOpen)
        return;
    m_isOpen = true;
    QWidget *focusBefore = m_window->focusWidget();
    place();
    raise();
    show();
    if (m_initialFocus)
        KeyboardFocus::give(m_initialFocus);
    else
        setFocus(Qt::OtherFocusReason);
    m_below.emplace(this, focusBefore);
    new EndOfDoubleClick(this);
}

bool Sheet::scroll(const QKeyEvent *event)
{
    return m_body->scroll(event);
}

bool Sheet::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_window && filterWindow(event))
        return true;
    if (event->type() == QEvent::LayoutRequest
        && (watched == m_header || watched == m_bodyContent || watched == m_footer))
        place();
    return QWidget::eventFilter(watched, event);
}

bool Sheet::filterWindow(QEvent *event)
{
    if (!m_isOpen)
        return false;
    switch (event->type()) {
    case QEvent::Resize:
        place();
        break;
    case QEvent::Close:
        if (m_holds && !m_sessionEnds) {
            event->ignore();
            if (m_wayOut)
                KeyboardFocus::give(m_wayOut);
            return true;
        }
        break;
    case QEvent::Hide:
        if (!event->spontaneous() && !m_holds)
            close();
        break;
    default:
        break;
    }
    return false;
}

void Sheet::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    // Hidden by itself, not along with its window.
    if (!m_isOpen || !isHidden())
        return;
    m_isOpen = false;
    m_below.reset();
    Q_EMIT closed();
}

void Sheet::keyPressEvent(QKeyEvent *event)
{
    // Whatever the key: it goes no further.
    if (!event->matches(QKeySequence::Cancel))
        scroll(event);
    else if (!m_holds)
        close();
}

void Sheet::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    m_cardPainter.paint(painter, rect(), m_card, palette(), event->rect());
    if (m_footer && m_footerLine) {
        painter.fillRect(m_card.left(), m_footer->y() - footerLine, m_card.width(), footerLine,
                         sheetHairline(palette()));
    }
}

void Sheet::place()
{
    if (!m_isOpen)
        return;
    setGeometry(m_window->rect());
    const int width = std::min(m_cardWidth, this->width() - 2 * clearOfWindow);
    const int room = height() - clearOfWindow;
    const int header = heightOf(m_header, width);
    const int footer = roomForFooter(width, room - header);
    const int body = std::max(m_leastBody, heightOf(m_bodyContent, width));
    m_card = QRect((this->width() - width) / 2, 0, width, std::min(header + body + footer, room));
    layOutParts(header, footer);
    update();
}

int Sheet::roomForFooter(int width, int room) const
{
    if (!m_footer)
        return 0;
    // An error in it scrolls in place, and gives way first.
    const QLayout *layout = m_footer->layout();
    const int least = layout ? layout->totalMinimumSize().height() : 0;
    const int natural = heightOf(m_footer, width);
    const int leastScrolling = scaled(tallestField) + 2 * clearOfFields;
    return line() + std::min(natural, std::max(least, room - line() - leastScrolling));
}

int Sheet::line() const
{
    return m_footerLine ? footerLine : 0;
}

void Sheet::layOutParts(int header, int footer)
{
    if (m_header)
        m_header->setGeometry(m_card.left(), 0, m_card.width(), header);
    if (m_footer) {
        m_footer->setGeometry(m_card.left(), m_card.height() - footer + line(), m_card.width(),
                              footer - line());
    }
    const int above = m_header ? clearOfFields - m_header->layout()->contentsMargins().bottom() : 0;
    const int below =
        m_footer && !m_footerLine ? clearOfFields - m_footer->layout()->contentsMargins().top() : 0;
    const int before = m_body->height();
    m_body->setGeometry(m_card.left(), header, m_card.width(),
                        std::max(0, m_card.height() - header - footer));
    m_body->setEdges(above, below);
    m_body->layOutContent();
    const QWidget *focus = focusWidget();
    if (m_body->height() != before && m_bodyContent && m_bodyContent->isAncestorOf(focus))
        m_body->reveal(focus);
}

void Sheet::watch(QWidget *part)
{
    part->installEventFilter(this);
    place();
}
