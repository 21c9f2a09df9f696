#include "LoopbackService.h"

#include "Clocks.h"

#include <arpa/inet.h>
#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

void insist(bool isRight)
{
    if (!isRight)
        std::abort();
}

bool sendAll(int socket, const char *bytes, qsizetype size)
{
    while (size > 0) {
        const ssize_t sent = send(socket, bytes, static_cast<size_t>(size), MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        bytes += sent;
        size -= sent;
    }
    return true;
}

/// Whether there was one; the requests have no body.
bool takeRequest(int socket)
{
    QByteArray request;
    std::array<char, 4096> piece{};
    while (!request.endsWith("\r\n\r\n")) {
        const ssize_t size = recv(socket, piece.data(), piece.size(), 0);
        if (size <= 0)
            return false;
        request.append(piece.data(), size);
    }
    return true;
}

[[noreturn]] void serve(int listener, int moments, const QByteArray &body,
                        LoopbackService::Pauses pauses)
{
    const QByteArray answer = "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n"
                              "Content-Length: "
        + QByteArray::number(body.size()) + "\r\n\r\n" + body;
    clockid_t clientsWork{};
    insist(clock_getcpuclockid(getppid(), &clientsWork) == 0);
    for (;;) {
        const int socket = accept(listener, nullptr, nullptr);
        const int atOnce = 1;
        setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &atOnce, sizeof atOnce);
        while (takeRequest(socket)) {
            usleep(pauses.beforeAll);
            if (!sendAll(socket, answer.constData(), answer.size() - 1))
                break;
            usleep(pauses.beforeLastByte);
            const LoopbackService::Moment now{Clocks::wall(), Clocks::read(clientsWork)};
            if (!sendAll(socket, answer.constData() + answer.size() - 1, 1))
                break;
            insist(write(moments, &now, sizeof now) == sizeof now);
        }
        close(socket);
    }
}

} // namespace

LoopbackService::LoopbackService(const QByteArray &body, Pauses pauses)
{
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto *const any = reinterpret_cast<sockaddr *>(&address);
    insist(bind(listener, any, size) == 0 && listen(listener, 8) == 0);
    insist(getsockname(listener, any, &size) == 0);
    m_base = "http://127.0.0.1:" + QByteArray::number(ntohs(address.sin_port));

    std::array<int, 2> pipe{};
    insist(pipe2(pipe.data(), O_CLOEXEC) == 0);
    m_process = fork();
    insist(m_process >= 0);
    if (m_process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        serve(listener, pipe[1], body, pauses);
    }
    close(listener);
    close(pipe[1]);
    m_moments = pipe[0];
}

LoopbackService::~LoopbackService()
{
    kill(m_process, SIGKILL);
    waitpid(m_process, nullptr, 0);
    close(m_moments);
}

LoopbackService::Moment LoopbackService::lastByte() const
{
    Moment moment{};
    insist(read(m_moments, &moment, sizeof moment) == sizeof moment);
    return moment;
}
