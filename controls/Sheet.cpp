#include "controls/Sheet.h"

#include "controls/SheetBody.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/Compositing.h"
#include "look/KeyboardFocus.h"
#include "look/Shadow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLayout>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>

#include <algorithm>

namespace {

constexpr int radius = 10;
constexpr int edge = 1;
constexpr int clearOfScreenEnd = 16;
constexpr int footerLine = 1;

/// Darkens the window that waits.
class Dim final : public QWidget {
public:
    explicit Dim(QWidget *window)
        : QWidget(window)
    {
        setGeometry(window->rect());
    }

protected:
    void paintEvent(QPaintEvent *) override { QPainter(this).fillRect(rect(), dim(palette())); }
};

int heightOf(const QWidget *part, int width)
{
    if (!part)
        return 0;
    int height = 0;
    if (const auto *layout = part->layout()) {
        height = layout->hasHeightForWidth() ? layout->totalHeightForWidth(width)
                                             : layout->totalSizeHint().height();
    } else {
        height =
            part->hasHeightForWidth() ? part->heightForWidth(width) : part->sizeHint().height();
    }
    return std::clamp(height, part->minimumHeight(), part->maximumHeight());
}

/// Square above, round below: the card hangs from the top of its window.
QPainterPath cardPath(const QRectF &card, qreal corner)
{
    QPainterPath path;
    path.addRoundedRect(card.adjusted(0, -2 * corner, 0, 0), corner, corner);
    QPainterPath below;
    below.addRect(card);
    return path.intersected(below);
}

} // namespace

Sheet::Sheet(int cardWidth, QWidget *over)
    : QWidget(over->window(), Qt::Dialog | Qt::FramelessWindowHint)
    , m_cardWidth(cardWidth)
    , m_composited(isComposited())
    , m_window(over->window())
    , m_body(new SheetBody(this))
{
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_TranslucentBackground, m_composited);
    setAccessibleRole(this, QAccessible::Dialog);
    m_body->hide();
    m_window->installEventFilter(this);
}

Sheet::~Sheet()
{
    delete m_dim;
}

void Sheet::setHeader(QWidget *header)
{
    m_header = header;
    header->setParent(this);
    // Screen readers go by this order, in which the body is older.
    header->lower();
    watch(header);
}

void Sheet::setBody(QWidget *body)
{
    m_bodyContent = body;
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

void Sheet::setClosesOnCancel(bool closes)
{
    m_closesOnCancel = closes;
}

void Sheet::setInitialFocus(QWidget *widget)
{
    m_initialFocus = widget;
}

void Sheet::open()
{
    m_isOpen = true;
    delete m_dim;
    m_dim = new Dim(m_window);
    m_dim->raise();
    m_dim->show();
    place();
    if (m_initialFocus)
        KeyboardFocus::give(m_initialFocus);
    show();
    raise();
    activateWindow();
}

QRect Sheet::card() const
{
    const int side = (width() - m_cardWidth) / 2;
    const int below = m_composited ? shadow().reachBelow() : edge;
    return {side, 0, m_cardWidth, height() - below};
}

void Sheet::closeEvent(QCloseEvent *event)
{
    // Asked by the desktop, not by the program.
    if (event->spontaneous() && !m_closesOnCancel) {
        event->ignore();
        return;
    }
    QWidget::closeEvent(event);
}

bool Sheet::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
        if (watched == m_window)
            place();
        break;
    case QEvent::LayoutRequest:
    case QEvent::ScreenChangeInternal:
        place();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void Sheet::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    if (event->spontaneous() || !m_isOpen)
        return;
    m_isOpen = false;
    delete m_dim;
    // Most desktops do so by themselves; some leave the keyboard nowhere.
    if (isActiveWindow() || !QApplication::activeWindow())
        m_window->activateWindow();
    Q_EMIT closed();
}

void Sheet::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cancel) && m_closesOnCancel)
        close();
    else
        QWidget::keyPressEvent(event);
}

void Sheet::paintEvent(QPaintEvent *event)
{
    const QRectF card = this->card();
    const QRectF outer = card.adjusted(-edge, 0, edge, edge);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_composited) {
        // Not for what changes within the card, a blinking cursor say.
        if (!card.contains(event->rect())) {
            // The edge lies around the card, beneath its shadow, which takes the glare off a light
            // one.
            painter.fillPath(cardPath(outer, radius + edge).subtracted(cardPath(card, radius)),
                             cardEdge(palette()));
            paintShadow(painter, card, shadow());
        }
        painter.fillPath(cardPath(card, radius), windowColor(palette()));
    } else {
        painter.fillRect(rect(), windowColor(palette()));
        painter.fillRect(rect(),
                         dim(palette())); // what the edge lies over, if it were seen through
        painter.fillRect(rect(), cardEdge(palette()));
        painter.fillRect(card, windowColor(palette()));
    }
    if (m_footer && m_footerLine) {
        const QRectF line(card.left(), m_footer->y() - footerLine, card.width(), footerLine);
        painter.fillRect(line, sheetHairline(palette()));
    }
}

Shadow Sheet::shadow() const
{
    const bool dark = schemeOf(palette()) == ColorScheme::Dark;
    return dark ? Shadow{12, 34, cardShadow(palette())} : Shadow{10, 30, cardShadow(palette())};
}

int Sheet::naturalHeight() const
{
    return heightOf(m_header, m_cardWidth) + heightOf(m_bodyContent, m_cardWidth)
        + heightOf(m_footer, m_cardWidth) + (m_footer && m_footerLine ? footerLine : 0);
}

int Sheet::roomOnScreen() const
{
    const int end = m_window->screen()->availableGeometry().bottom() + 1;
    return end - clearOfScreenEnd - m_window->mapToGlobal(QPoint()).y();
}

void Sheet::place()
{
    if (!m_isOpen)
        return;
    if (m_dim)
        m_dim->setGeometry(m_window->rect());
    // A body of a few lines stays to be read and scrolled, even where the screen ends above it.
    constexpr int leastBody = 80;
    const int natural = naturalHeight();
    const int least = natural - heightOf(m_bodyContent, m_cardWidth) + leastBody;
    const int height = std::min(natural, std::max(roomOnScreen(), least));
    const int side = m_composited ? shadow().blur : edge;
    const int below = m_composited ? shadow().reachBelow() : edge;
    const QPoint origin = m_window->mapToGlobal(QPoint());
    const QRect card(origin.x() + (m_window->width() - m_cardWidth) / 2, origin.y(), m_cardWidth,
                     height);
    setGeometry(card.adjusted(-side, 0, side, below));
    layOutParts(this->card());
    update();
}

void Sheet::layOutParts(const QRect &card)
{
    const int header = heightOf(m_header, m_cardWidth);
    const int footer = heightOf(m_footer, m_cardWidth);
    const int line = m_footer && m_footerLine ? footerLine : 0;
    if (m_header)
        m_header->setGeometry(card.left(), card.top(), card.width(), header);
    m_body->setGeometry(card.left(), card.top() + header, card.width(),
                        card.height() - header - footer - line);
    if (m_footer)
        m_footer->setGeometry(card.left(), card.bottom() + 1 - footer, card.width(), footer);
}

void Sheet::watch(QWidget *part)
{
    part->installEventFilter(this);
    place();
}
