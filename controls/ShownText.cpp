#include "controls/ShownText.h"

#include <algorithm>

namespace {

bool isLineBreak(QChar c)
{
    constexpr QChar beginOfFrame(0xFDD0); // a text document ends a paragraph at these two as well
    constexpr QChar endOfFrame(0xFDD1);
    return c == u'\n' || c == u'\r' || c == QChar::ParagraphSeparator || c == beginOfFrame
        || c == endOfFrame;
}

/// How many code units the character of a field takes that begins at `index`.
qsizetype lengthAt(QStringView text, qsizetype index)
{
    return text.sliced(index).startsWith(u"\r\n") ? 2 : 1;
}

/// An ellipsis that is no other letter of the text: no typed one is ever taken for it.
QChar unusedMark(QStringView text)
{
    for (const QChar mark : QStringView(u"\u22ef\u22ee\u22f0\u22f1\ufe19")) {
        if (!text.contains(mark))
            return mark;
    }
    return QChar::ObjectReplacementCharacter;
}

} // namespace

ShownText::ShownText(const QString &whole, qsizetype most)
    : m_whole(whole)
    , m_end(std::min(whole.size(), most))
{
    if (m_end > 0 && m_end < whole.size() && whole[m_end - 1].isHighSurrogate())
        --m_end;
    m_shown.reserve(m_end + 1);
    qsizetype next = 0;
    for (; next < m_end; next += lengthAt(whole, next))
        m_shown += isLineBreak(whole[next]) ? QChar(u'\n') : whole[next];
    m_end = next;
    if (m_end < whole.size()) {
        m_mark = unusedMark(m_shown);
        m_shown += m_mark;
    }
}

QString ShownText::wholeAfter(const QString &now) const
{
    const auto from = std::mismatch(m_shown.cbegin(), m_shown.cend(), now.cbegin(), now.cend());
    const qsizetype same = from.first - m_shown.cbegin();
    if (same == m_shown.size() && same == now.size())
        return m_whole;
    const qsizetype most = std::min(m_shown.size(), now.size()) - same;
    qsizetype sameAtEnd = 0;
    while (sameAtEnd < most
           && m_shown[m_shown.size() - 1 - sameAtEnd] == now[now.size() - 1 - sameAtEnd])
        ++sameAtEnd;
    QString changed = now.sliced(same, now.size() - same - sameAtEnd);
    if (!m_mark.isNull() && sameAtEnd == 0 && same < m_shown.size()) {
        const qsizetype mark = changed.lastIndexOf(m_mark);
        if (mark >= 0)
            changed.replace(mark, 1, m_whole.sliced(m_end));
    }
    return m_whole.first(indexInWhole(same)) + changed
        + m_whole.sliced(indexInWhole(m_shown.size() - sameAtEnd));
}

qsizetype ShownText::indexInWhole(qsizetype shownIndex) const
{
    if (shownIndex == m_shown.size())
        return m_whole.size();
    qsizetype index = 0;
    for (qsizetype i = 0; i < shownIndex; ++i)
        index += lengthAt(m_whole, index);
    return index;
}
