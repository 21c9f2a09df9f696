#include "backend/WaitingRoom.h"

#include "backend/TransportError.h"

#include <algorithm>
#include <coroutine>
#include <utility>

struct WaitingRoom::Wait {
    enum class State { waiting, over, givenUp };

    State state = State::waiting;
    std::coroutine_handle<> waiting;

    void end(State how)
    {
        if (state != State::waiting)
            return;
        state = how;
        if (waiting)
            std::exchange(waiting, nullptr).resume();
    }
};

WaitingRoom::Seat::Seat(WaitingRoom &room)
    : m_wait(std::make_shared<Wait>())
{
    if (room.m_isClosed)
        throw TransportError::ofClosing();
    std::erase_if(room.m_waits, [](const auto &wait) { return wait.expired(); });
    room.m_waits.push_back(m_wait);
}

std::function<void()> WaitingRoom::Seat::wake() const
{
    return [wait = m_wait] {
        // The call may destroy this closure.
        // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
        const std::shared_ptr<Wait> kept = wait;
        kept->end(Wait::State::over);
    };
}

bool WaitingRoom::Seat::await_ready() const noexcept
{
    return m_wait->state != Wait::State::waiting;
}

void WaitingRoom::Seat::await_suspend(std::coroutine_handle<> waiting) noexcept
{
    m_wait->waiting = waiting;
}

void WaitingRoom::Seat::await_resume() const
{
    if (m_wait->state == Wait::State::givenUp)
        throw TransportError::ofClosing();
}

void WaitingRoom::close()
{
    m_isClosed = true;
    const std::vector<std::weak_ptr<Wait>> waits = std::exchange(m_waits, {});
    for (const auto &seat : waits) {
        if (const std::shared_ptr<Wait> wait = seat.lock())
            wait->end(Wait::State::givenUp);
    }
}
