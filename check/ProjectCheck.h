#pragma once

#include "backend/Configuration.h"
#include "check/Finding.h"
#include "check/Probe.h"

#include <functional>

/// Looks at a project as the application meets it: from outside, with the public key. What it tries
/// to write must be refused; where it is not, nothing of it stays. For one thread.
class ProjectCheck {
public:
    /// `tell` hears of every finding as it comes.
    ProjectCheck(Configuration configuration, std::function<void(const Finding &)> tell);

    /// To be called once. Goes on as far as the project lets it.
    QCoro::Task<void> run();

    /// Nothing answered at the address, or nothing that can be trusted.
    bool isOutOfReach() const { return m_isOutOfReach; }
    int faults() const { return m_faults; }

private:
    void tell(Finding::Weight weight, const QString &text);
    void good(const QString &text) { tell(Finding::Weight::Good, text); }
    void notice(const QString &text) { tell(Finding::Weight::Notice, text); }
    void fault(const QString &text) { tell(Finding::Weight::Fault, text); }

    Request request(const QByteArray &verb, const QString &path, const QByteArray &body = {}) const;
    void judgeConnection(const Answer &answer);
    void judgeClock(const Answer &answer);
    bool judgeKey(const Answer &answer);
    bool judgeTable(const Answer &answer);
    QCoro::Task<void> checkRows();
    QCoro::Task<void> checkWrites();
    QCoro::Task<void> checkAccounts();

    const Configuration m_configuration;
    std::function<void(const Finding &)> m_tell;
    Probe m_probe;
    bool m_isOutOfReach = false;
    int m_faults = 0;
};
