#pragma once

#include <QCoro/QCoroTask>
#include <coroutine>
#include <functional>
#include <memory>
#include <vector>

/// Where coroutines wait on behalf of one owner: for a reply, for the worker.
///
/// When the owner goes, those who still wait go on at once with a TransportError. Left suspended,
/// their frames would leak, and their callers would never learn that nothing comes any more.
/// For one thread.
class WaitingRoom {
    struct Wait;

public:
    /// One wait: `co_await` it by name after its `wake` was handed to what will end the wait.
    class Seat {
    public:
        /// Throws TransportError when the room is closed already.
        explicit Seat(WaitingRoom &room);

        /// Ends the wait when called; further calls, and those after the room closed, do nothing.
        std::function<void()> wake() const;

        bool await_ready() const noexcept;
        void await_suspend(std::coroutine_handle<> waiting) noexcept;
        /// Throws TransportError when the room closed.
        void await_resume() const;

    private:
        std::shared_ptr<Wait> m_wait;
    };

    WaitingRoom() = default;
    ~WaitingRoom() { close(); }
    Q_DISABLE_COPY_MOVE(WaitingRoom)

    /// Sends everybody on with a TransportError, and all who come later.
    void close();

private:
    std::vector<std::weak_ptr<Wait>> m_waits;
    bool m_isClosed = false;
};
