#include "service/RequestFrame.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <utility>

namespace {

constexpr std::size_t largestHead = 64U << 10U;
constexpr std::size_t largestBody = 10U << 20U;

std::string lowered(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return lower;
}

std::string_view trimmed(std::string_view text)
{
    const auto start = text.find_first_not_of(" \t");
    if (start == std::string_view::npos)
        return {};
    return text.substr(start, text.find_last_not_of(" \t") - start + 1);
}

/// The whole text as a number; false when it is none or too large for one.
bool readNumber(std::string_view text, int base, std::size_t *number)
{
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), *number, base);
    return !text.empty() && error == std::errc() && end == text.data() + text.size();
}

} // namespace

void RequestFrame::append(std::string_view bytes)
{
    m_bytes += bytes;
    advance();
}

bool RequestFrame::takeWaitForContinue()
{
    const bool waits = m_waitsForContinue && m_state == State::Incomplete;
    if (waits)
        m_waitsForContinue = false;
    return waits;
}

std::string RequestFrame::take()
{
    const std::string body = m_isChunked ? std::move(m_body) : m_bytes.substr(m_headSize, m_length);
    std::string request = std::move(m_head);
    if (m_isChunked || m_hasLength)
        request += "Content-Length: " + std::to_string(body.size()) + "\r\n";
    request += "\r\n" + body;
    const std::string rest = m_bytes.substr(m_end);
    *this = RequestFrame();
    append(rest);
    return request;
}

std::string RequestFrame::firstLine() const
{
    const auto line = m_bytes.substr(0, std::min(m_bytes.find_first_of("\r\n"), largestHead));
    return line.substr(0, line.find(" HTTP/"));
}

void RequestFrame::refuse(int status)
{
    m_state = State::Refused;
    m_refusal = status;
}

void RequestFrame::advance()
{
    if (m_state == State::Refused || m_state == State::Complete)
        return;
    if (m_headSize == 0) {
        // Some clients end a body with an empty line too many.
        m_bytes.erase(0, std::min(m_bytes.find_first_not_of("\r\n"), m_bytes.size()));
        m_state = m_bytes.empty() ? State::Empty : State::Incomplete;
        const auto end = m_bytes.find("\r\n\r\n", m_searched);
        m_searched = m_bytes.size() - std::min<std::size_t>(m_bytes.size(), 3);
        if (std::min(end, m_bytes.size()) > largestHead)
            return refuse(431);
        if (end == std::string::npos)
            return;
        readHead(end);
    }
    if (m_state == State::Refused)
        return;
    if (m_isChunked)
        return readChunks();
    m_end = m_headSize + m_length;
    if (m_bytes.size() >= m_end)
        m_state = State::Complete;
}

void RequestFrame::readHead(std::size_t end)
{
    m_headSize = end + 4;
    const std::string_view head(m_bytes.data(), end + 2);
    auto at = head.find("\r\n") + 2;
    m_head = head.substr(0, at);
    while (at < head.size() && m_state != State::Refused) {
        const auto next = head.find("\r\n", at);
        keepHeader(head.substr(at, next - at));
        at = next + 2;
    }
    // Two lengths are how a request is hidden inside another one.
    if (m_isChunked && m_hasLength)
        refuse(400);
    m_end = m_headSize;
}

void RequestFrame::keepHeader(std::string_view line)
{
    const auto colon = line.find(':');
    if (colon == std::string_view::npos || colon == 0 || line.find_first_of(" \t") < colon)
        return refuse(400);
    const std::string name = lowered(line.substr(0, colon));
    const std::string_view value = trimmed(line.substr(colon + 1));
    if (name == "content-length") {
        std::size_t length = 0;
        if (!readNumber(value, 10, &length))
            return refuse(value.find_first_not_of("0123456789") == std::string_view::npos
                                  && !value.empty()
                              ? 413
                              : 400);
        if (length > largestBody)
            return refuse(413);
        if (m_hasLength && length != m_length)
            return refuse(400);
        m_hasLength = true;
        m_length = length;
    } else if (name == "transfer-encoding") {
        if (lowered(value) != "chunked" || m_isChunked)
            return refuse(501);
        m_isChunked = true;
    } else if (name == "expect") {
        if (lowered(value) != "100-continue")
            return refuse(417);
        m_waitsForContinue = true;
    } else if (name == "range") {
        // Of rows. The library would take it for one of bytes, and cut the JSON in the middle.
        m_head += "Rows-Range: " + std::string(value) + "\r\n";
    } else if (name != "rows-range" && name != "content-encoding") {
        // A packed body is passed on as it is, and is no JSON: the library would unpack it, to any
        // size.
        m_head.append(line).append("\r\n");
    }
}

void RequestFrame::readChunks()
{
    for (;;) {
        const auto lineEnd = m_bytes.find("\r\n", m_end);
        if (std::min(lineEnd, m_bytes.size()) - m_end > largestHead)
            return refuse(431);
        if (lineEnd == std::string::npos)
            return;
        const std::string_view line(m_bytes.data() + m_end, lineEnd - m_end);
        std::size_t size = 0;
        if (!readNumber(trimmed(line.substr(0, line.find(';'))), 16, &size))
            return refuse(400);
        if (size > largestBody || m_body.size() + size > largestBody)
            return refuse(413);
        const auto start = lineEnd + 2;
        if (size == 0) {
            // What follows the last chunk ends with an empty line; nothing in it matters here.
            const auto end =
                m_bytes.compare(start, 2, "\r\n") == 0 ? start : m_bytes.find("\r\n\r\n", start);
            if (std::min(end, m_bytes.size()) - start > largestHead)
                return refuse(431);
            if (end == std::string::npos)
                return;
            m_end = end + (end == start ? 2 : 4);
            m_state = State::Complete;
            return;
        }
        if (m_bytes.size() < start + size + 2)
            return;
        if (m_bytes.compare(start + size, 2, "\r\n") != 0)
            return refuse(400);
        m_body.append(m_bytes, start, size);
        m_end = start + size + 2;
    }
}
