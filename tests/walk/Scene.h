#pragma once

#include "backend/SupabaseClient.h"
#include "platform/Now.h"
#include "support/HttpServer.h"

#include <functional>
#include <memory>
#include <optional>

class ContentView;
class QSize;

/// What the walker and its mirror do alike: a program with one window on a service of its own.
namespace Scene {

/// The whole of main(), up to `body`.
int run(int argc, char *argv[], const std::function<int()> &body);

/// Drops what the platform says at every popup that it cannot do.
void quieten();

/// A service and the way to it. Whatever is on its way when it ends, ends with it.
class Stage {
public:
    Stage();
    ~Stage();
    Q_DISABLE_COPY_MOVE(Stage)

    HttpServer &server() { return m_server; }

private:
    HttpServer m_server;
    std::optional<SupabaseClient::Lifetime> m_backend;
};

/// Lets the program go on until the condition holds; whether it came to that within `patience`
/// milliseconds. No longer than it takes: it is asked again whenever something has happened.
bool waitFor(const std::function<bool()> &condition, int patience);

std::unique_ptr<ContentView> openWindow(QSize size, bool dark, const Now &now);
void setDark(bool dark);
/// Lets everything that waits for the event loop have its turn.
void settle();

HttpAnswer success(const QByteArray &rows);
/// The message tells it from others.
HttpAnswer failure(int status, int number);
/// The session of the account that a sign-in asks for.
HttpAnswer signedIn(const HttpRequest &request);
/// Signs in as another window would.
void signIn(const QString &user);

} // namespace Scene
