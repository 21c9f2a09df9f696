#include "controls/PopupLabel.h"

#include "controls/Menu.h"
#include "controls/OneLine.h"
#include "look/FocusRing.h"
#include "look/Fonts.h"
#include "look/Painting.h"
#include "look/PressKeys.h"
#include "look/Reach.h"
#include "look/Symbols.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <optional>

namespace {

constexpr int paddingX = 10;
constexpr int paddingY = 6;
constexpr int radius = 8;
constexpr int chevronSize = 11;
constexpr int chevronGap = 8;
/// More than any screen shows in one line: measuring takes its time by the character.
constexpr qsizetype mostInLine = 1500;

int chevronRoom()
{
    return chevronGap + scaled(chevronSize);
}

} // namespace

PopupLabel::PopupLabel(const QString &name, QWidget *parent)
    : QAbstractButton(parent)
    , m_menu(new Menu(this))
{
    setFont(appFont(13));
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    setAccessibleName(name);
    setAccessibleRole(this, QAccessible::ButtonMenu);
    m_menu->setAccessibleName(name);
    connect(m_menu, &QMenu::aboutToHide, this, [this] { setDown(false); });
    pressOnce(this);
    new FocusRing(this, radius, ringGap);
}

void PopupLabel::setLabel(const QString &label, ColorRole color)
{
    m_label = label;
    m_line = oneLine(label.left(mostInLine));
    m_color = color;
    setAccessibleDescription(label);
    updateToolTip();
    updateGeometry();
    update();
}

void PopupLabel::press()
{
    m_menu->open(Menu::OpenedBy::Keyboard);
}

std::optional<bool> PopupLabel::isOpen() const
{
    return m_menu->isVisible();
}

QSize PopupLabel::sizeHint() const
{
    const int text = qCeil(QFontMetricsF(font()).horizontalAdvance(m_line));
    return {2 * paddingX + text + chevronRoom(), minimumSizeHint().height()};
}

QSize PopupLabel::minimumSizeHint() const
{
    const int height = std::max(scaled(16), fontMetrics().height());
    const int ellipsis = fontMetrics().horizontalAdvance(QChar(0x2026));
    return {2 * paddingX + ellipsis + chevronRoom(), height + 2 * paddingY};
}

void PopupLabel::keyPressEvent(QKeyEvent *event)
{
    if (isPressKey(event) || event->key() == Qt::Key_Down)
        m_menu->open(Menu::OpenedBy::Keyboard);
    else
        event->ignore(); // a button would take the other arrows for itself
}

void PopupLabel::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    setDown(true);
    m_menu->open(Menu::OpenedBy::Mouse);
}

void PopupLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (looksDisabled(this))
        painter.setOpacity(disabledOpacity);
    fillRounded(painter, rect(), radius, buttonLift(palette()));
    fillRounded(painter, rect(), radius,
                isDown() ? buttonPressed(palette()) : buttonFill(palette()));
    strokeRounded(painter, rect(), radius, controlEdge(palette()));
    const int size = scaled(chevronSize);
    paintSymbol(painter, Symbol::ChevronDown, QRectF(width() - paddingX - size, 0, size, height()),
                size, secondaryText(palette()));
    painter.setPen(m_color(palette()));
    painter.drawText(QRect(paddingX, 0, textRoom(), height()),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     QFontMetricsF(font()).elidedText(m_line, Qt::ElideRight, textRoom()));
}

void PopupLabel::resizeEvent(QResizeEvent *)
{
    updateToolTip();
}

int PopupLabel::textRoom() const
{
    return width() - 2 * paddingX - chevronRoom();
}

void PopupLabel::updateToolTip()
{
    const bool isCut =
        m_label.size() > mostInLine || QFontMetricsF(font()).horizontalAdvance(m_line) > textRoom();
    setPlainToolTip(this, isCut ? m_label : QString());
}
