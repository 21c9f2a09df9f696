#pragma once

#include "support/AtSpi.h"
#include "support/HttpServer.h"

#include <QProcess>
#include <QTest>

/// Nothing in a reader's tests is timed: this is how long a machine may be busy with other things.
#define EVENTUALLY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, 90'000)

/// The real program, in a process of its own, against a service of the test's. Tests find what is
/// in its window as readers do.
class ReaderProgram {
public:
    /// Starts it. Its window may come later.
    /// `platform`: how it reaches the screen, as the toolkit names it.
    ReaderProgram(const QDBusConnection &bus, const HttpServer &service,
                  const QByteArray &platform = "xcb");
    /// Ends it.
    ~ReaderProgram();
    Q_DISABLE_COPY_MOVE(ReaderProgram)

    bool isRunning() const { return m_process.state() == QProcess::Running; }

    /// What it has complained of so far, line by line.
    const QStringList &complaints() const { return m_complaints; }

    /// The program as readers know it; invalid until it has told them of itself.
    AtSpi::Object object() const;
    /// The shown list, once it has rows; invalid before.
    AtSpi::Object list() const;

    /// What somebody hears who lets the reader go through `object`, each thing with its role:
    /// "heading amorvelle.fr". Only what shows; lists are named, not entered.
    static QStringList heard(const AtSpi::Object &object);

private:
    QDBusConnection m_bus;
    QProcess m_process;
    QStringList m_complaints;
};
