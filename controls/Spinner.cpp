#include "controls/Spinner.h"

#include "look/Colors.h"
#include "look/Fonts.h"

#include <QPainter>
#include <QStyle>

Spinner::Spinner(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_turn.setStartValue(0.0);
    m_turn.setEndValue(360.0);
    m_turn.setDuration(1000); // ms a turn
    m_turn.setLoopCount(-1);
    connect(&m_turn, &QVariantAnimation::valueChanged, this, [this] { update(); });
}

bool Spinner::isTurning() const
{
    return m_turn.state() == QAbstractAnimation::Running;
}

QSize Spinner::sizeHint() const
{
    return {scaled(24), scaled(24)};
}

void Spinner::hideEvent(QHideEvent *)
{
    m_turn.stop();
}

void Spinner::paintEvent(QPaintEvent *)
{
    constexpr qreal stroke = 2.5;
    const qreal inset = width() / 24.0 + stroke / 2;
    const QRectF ring = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
    const qreal angle = m_turn.currentValue().toReal();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(spinnerTrack(palette()), stroke));
    painter.drawEllipse(ring);
    painter.setPen(QPen(secondaryText(palette()), stroke, Qt::SolidLine, Qt::FlatCap));
    painter.drawArc(ring, qRound((90 - angle) * 16), -90 * 16);
}

void Spinner::showEvent(QShowEvent *)
{
    // Where the desktop switches animations off, styles animate nothing.
    if (style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0)
        m_turn.start();
}
