#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <map>
#include <mutex>
#include <string>

/// Counts the tries of each address in the last five minutes. Any thread may ask.
class RateLimit {
public:
    using Clock = std::chrono::steady_clock;

    /// `most` tries are allowed; 0 allows any number.
    explicit RateLimit(int most)
        : m_most(static_cast<std::size_t>(most))
    {
    }

    /// Whether one more try is allowed; counts it if so.
    bool allows(const std::string &address, Clock::time_point now = Clock::now())
    {
        if (m_most == 0)
            return true;
        const std::scoped_lock lock(m_mutex);
        std::deque<Clock::time_point> &tries = m_tries[address];
        while (!tries.empty() && now - tries.front() >= std::chrono::minutes(5))
            tries.pop_front();
        if (tries.size() >= m_most)
            return false;
        tries.push_back(now);
        return true;
    }

private:
    std::size_t m_most;
    std::mutex m_mutex;
    std::map<std::string, std::deque<Clock::time_point>> m_tries;
};
