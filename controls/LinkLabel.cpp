#include "controls/LinkLabel.h"

#include "look/Colors.h"
#include "look/FocusRing.h"
#include "look/Fonts.h"
#include "look/Painting.h"
#include "look/PressKeys.h"

#include <QDesktopServices>
#include <QPainter>
#include <QStringList>

using namespace Qt::StringLiterals;

bool mayOpen(const QUrl &address)
{
    static const QStringList schemes = {QString(), u"http"_s, u"https"_s, u"mailto"_s, u"tel"_s};
    return schemes.contains(address.scheme()); // which QUrl keeps in lower case
}

LinkLabel::LinkLabel(const QString &text, const QUrl &address, QWidget *parent)
    : QAbstractButton(parent)
    , m_label(text)
    , m_address(address)
{
    QFont underlined = appFont(12, QFont::DemiBold);
    underlined.setUnderline(true);
    setFont(underlined);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleRole(this, QAccessible::Link);
    setAccessibleName(text);
    setAccessibleDescription(address.toDisplayString());
    setPlainToolTip(this, address.toDisplayString());
    pressWithReturn(this);
    new FocusRing(this, 3, ringGap);

    connect(this, &QAbstractButton::clicked, this, [this] {
        if (mayOpen(m_address))
            QDesktopServices::openUrl(m_address);
    });
}

QSize LinkLabel::sizeHint() const
{
    return {qCeil(QFontMetricsF(font()).horizontalAdvance(m_label)), lineHeight(font())};
}

void LinkLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(accentInk(palette()));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, m_label);
}
