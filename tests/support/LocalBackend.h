#pragma once

#include "backend/Backend.h"

#include <QTemporaryDir>

using namespace Qt::StringLiterals;

struct LocalBackendParts {
    QTemporaryDir folder;
    UserDefaults defaults{folder.filePath(u"defaults"_s)};
    NotificationCenter center;
};

/// A Backend that remembers, announces and leaves diagnostics where nobody else does.
class LocalBackend : public LocalBackendParts, public Backend {
public:
    explicit LocalBackend(const Configuration &configuration, const Limits &limits = {})
        : LocalBackend(configuration, limits, {})
    {
    }
    LocalBackend(const Configuration &configuration, const Limits &limits,
                 const QString &diagnosticFile)
        : Backend(configuration, defaults, center, limits,
                  diagnosticFile.isEmpty() ? folder.filePath(u"reply.json"_s) : diagnosticFile)
    {
    }
};
