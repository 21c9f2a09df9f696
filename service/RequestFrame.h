#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Collects the bytes of one connection until a request is whole, so that nobody has to wait for a
/// slow client. What it lets through has bounds: the head 64 KiB, the body 10 MiB.
class RequestFrame {
public:
    enum class State {
        Empty, ///< not a byte of a request yet
        Incomplete,
        Complete, ///< take() gives it
        Refused, ///< `refusal` is the HTTP status that says why
    };

    void append(std::string_view bytes);
    State state() const { return m_state; }
    int refusal() const { return m_refusal; }
    /// Whether the client waits for a "100 Continue" before it sends the body; tells so once.
    bool takeWaitForContinue();
    /// The request, as the HTTP library is to read it: the body in one piece with its length, and
    /// without the headers that the library would act upon by itself. What came after the request
    /// stays and is the beginning of the next one.
    std::string take();
    /// Verb and target as far as they are known, for the log.
    std::string firstLine() const;

private:
    void advance();
    void readHead(std::size_t end);
    void readChunks();
    void refuse(int status);
    void keepHeader(std::string_view line);

    std::string m_bytes;
    std::string m_head; ///< the request line and the headers that are handed on
    std::string m_body; ///< of a body in chunks, those that came whole
    std::size_t m_headSize = 0; ///< 0 until the head is whole
    std::size_t m_searched = 0; ///< where looking for the end of the head goes on
    std::size_t m_end = 0; ///< of the request, or of the chunks read so far
    std::size_t m_length = 0;
    bool m_hasLength = false;
    bool m_isChunked = false;
    bool m_waitsForContinue = false;
    State m_state = State::Empty;
    int m_refusal = 0;
};
