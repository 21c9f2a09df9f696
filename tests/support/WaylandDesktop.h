#pragma once

#include "support/VirtualPointer.h"

#include <QImage>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <memory>

/// A Wayland compositor (sway) without a screen, with a mouse and a keyboard of the test's. The
/// environment names it, and no X server, to the programs that this one starts from then on.
class WaylandDesktop {
public:
    /// What it needs that this machine lacks; empty when it can be made.
    static QStringList missing();

    WaylandDesktop();
    ~WaylandDesktop();
    Q_DISABLE_COPY_MOVE(WaylandDesktop)

    /// What the screen shows now.
    QImage picture() const;
    /// Where the one open window is on the screen; null when there is none, or more than one.
    QRect window() const;

    VirtualPointer &pointer() { return *m_pointer; }
    /// A key by its name in X11's list ("Escape"), pressed and released.
    void key(const QString &name) const;
    void type(const QString &text) const;

private:
    QByteArray run(const QString &program, const QStringList &arguments) const;
    QString writeConfiguration() const;
    void startCompositor();
    void startKeyboard();

    QTemporaryDir m_folder;
    QProcess m_compositor;
    QProcess m_keyboard; ///< holds one down to the seat: without any, nothing has the focus
    QString m_socket; ///< of the compositor's own commands
    std::unique_ptr<VirtualPointer> m_pointer;
};
