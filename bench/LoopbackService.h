#pragma once

#include <QByteArray>

#include <sys/types.h>

/// A service on the loopback interface that answers every request with the same body: a process of
/// its own, so that serving is no work of the one that is measured. To be made before there are
/// threads. It ends with this object, or with the process that made it.
class LoopbackService {
public:
    /// How long an answer is held back, in microseconds.
    struct Pauses {
        unsigned beforeAll = 0;
        unsigned beforeLastByte = 0;
    };
    LoopbackService(const QByteArray &body, Pauses pauses);
    ~LoopbackService();
    LoopbackService(const LoopbackService &) = delete;
    LoopbackService &operator=(const LoopbackService &) = delete;

    /// "http://127.0.0.1:port"
    QByteArray base() const { return m_base; }

    struct Moment {
        double wall; ///< by Clocks::wall()
        double work; ///< what this process had worked by then, by Clocks::ofProcess()
    };
    /// When the last byte of the oldest answer not yet asked about was sent; waits for it.
    Moment lastByte() const;

private:
    pid_t m_process = -1;
    int m_moments = -1; ///< the end of a pipe that they are read from
    QByteArray m_base;
};
