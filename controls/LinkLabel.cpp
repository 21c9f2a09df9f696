#include "controls/LinkLabel.h"

#include "look/Colors.h"
#include "look/FocusRing.h"
#include "look/Fonts.h"
#include "look/Painting.h"
#include "look/PressKeys.h"

#include <QDesktopServices>
#include <QPainter>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Whether a text names a computer the way people write it: "www.exemple.fr", not "samedi", "14.30"
/// or a folder.
bool isHost(QStringView text)
{
    const auto labels = text.split(u'.');
    const auto isLabel = [](QStringView label) {
        const auto isOfIt = [](QChar c) { return c.isLetterOrNumber() || c.isMark() || c == u'-'; };
        return !label.isEmpty() && !label.startsWith(u'-') && !label.endsWith(u'-')
            && std::ranges::all_of(label, isOfIt);
    };
    const auto isNumber = [](QStringView label) {
        return std::ranges::all_of(label, [](QChar c) { return c.isDigit(); });
    };
    return labels.size() > 1 && std::ranges::all_of(labels, isLabel) && !isNumber(labels.last());
}

} // namespace

std::optional<QUrl> addressToOpen(const QUrl &address)
{
    if (!address.isValid())
        return {};
    static const QStringList schemes = {u"http"_s, u"https"_s, u"mailto"_s, u"tel"_s};
    if (!address.scheme().isEmpty()) {
        const bool isHarmless = schemes.contains(address.scheme()); // QUrl keeps it in lower case
        return isHarmless ? std::optional(address) : std::nullopt;
    }
    // What has no scheme would be taken for a file, of whatever folder the program runs in.
    const QString path = address.path(QUrl::FullyEncoded);
    const qsizetype slash = path.indexOf(u'/');
    const QString host =
        QUrl::fromPercentEncoding(path.first(slash < 0 ? path.size() : slash).toLatin1());
    if (!address.authority().isEmpty() || !isHost(host))
        return {};
    QUrl page = address;
    page.setScheme(u"https"_s);
    page.setPath(slash < 0 ? QString() : path.sliced(slash), QUrl::TolerantMode);
    page.setHost(host);
    return page.isValid() && !page.host().isEmpty() ? std::optional(page) : std::nullopt;
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
        if (const auto opened = addressToOpen(m_address))
            QDesktopServices::openUrl(*opened);
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
