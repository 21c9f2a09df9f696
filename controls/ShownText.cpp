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

} // namespace

ShownText::ShownText(const QString &whole, qsizetype most)
    : m_whole(whole)
{
    qsizetype end = std::min(whole.size(), most);
    if (end > 0 && end < whole.size() && whole[end - 1].isHighSurrogate())
        --end;
    m_isCut = end < whole.size();
    m_shown.reserve(end + 1);
    for (qsizetype i = 0; i < end; i += lengthAt(whole, i))
        m_shown += isLineBreak(whole[i]) ? QChar(u'\n') : whole[i];
    if (m_isCut)
        m_shown += mark;
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
    return m_whole.first(indexInWhole(same)) + now.sliced(same, now.size() - same - sameAtEnd)
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
