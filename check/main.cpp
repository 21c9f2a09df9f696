// amorvelle-check ADDRESS KEY: what stands in the way of a project's members. Written for whoever
// runs the project, in French; tells a script by its exit code.

#include "backend/Configuration.h"
#include "check/ProjectCheck.h"

#include <QCoreApplication>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

enum ExitCode { allStands = 0, faultsFound = 1, wronglyCalled = 2, notReached = 3 };

constexpr const char *usage =
    "Usage : amorvelle-check ADRESSE CLÉ\n"
    "  ADRESSE  celle du projet, https://....supabase.co\n"
    "  CLÉ      sa clé publique, sb_publishable_...\n"
    "Regarde le projet comme le fait l'application, et n'y laisse rien.\n"
    "Rend 0 si tout est en ordre, 1 sinon, 2 pour un appel mal écrit, 3 si le projet est hors "
    "d'atteinte.\n";

void print(const Finding &finding)
{
    const char *mark = nullptr;
    switch (finding.weight) {
    case Finding::Weight::Good:
        mark = "bien ";
        break;
    case Finding::Weight::Notice:
        mark = "note ";
        break;
    case Finding::Weight::Fault:
        mark = "FAUTE";
        break;
    }
    std::printf("%s  %s\n", mark, finding.text.toUtf8().constData());
    std::fflush(stdout);
}

QCoro::Task<void> runToEnd(ProjectCheck &check)
{
    const QCoro::Task<void> running = check.run();
    co_await running;
    if (check.isOutOfReach())
        QCoreApplication::exit(notReached);
    else
        QCoreApplication::exit(check.faults() > 0 ? faultsFound : allStands);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3 || arguments[1].isEmpty() || arguments[2].isEmpty()
        || arguments[1].startsWith(u'-')) {
        std::fputs(usage, stderr);
        return wronglyCalled;
    }
    ProjectCheck check({normalizeURL(arguments[1]), arguments[2].trimmed()}, print);
    QMetaObject::invokeMethod(
        qApp, [&check] { const auto task = runToEnd(check); }, Qt::QueuedConnection);
    return QCoreApplication::exec();
}
