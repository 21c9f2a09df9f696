#pragma once

#include "support/AtSpi.h"
#include "support/HttpServer.h"
#include "support/ReaderDesktop.h"

#include <QTest>

/// Nothing in a reader's tests is timed: this is how long a machine may be busy with other things.
#define EVENTUALLY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, 90'000)

/// The real program, in a process of its own on a reader's desktop, against a service of the
/// test's.
class ReaderProgram {
public:
    /// Starts it. Its window may come later.
    ReaderProgram(const ReaderDesktop &desktop, const HttpServer &service);
    /// Ends it.
    ~ReaderProgram();
    Q_DISABLE_COPY_MOVE(ReaderProgram)

    bool isRunning() const { return m_process.state() == QProcess::Running; }

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
};
