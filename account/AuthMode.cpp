#include "account/AuthMode.h"

std::optional<AuthMode> AuthMode::fromRawValue(const QString &rawValue)
{
    for (const AuthMode mode : allCases) {
        if (mode.rawValue() == rawValue)
            return mode;
    }
    return std::nullopt;
}

QString AuthMode::rawValue() const
{
    switch (m_case) {
    case signIn:
        return QStringLiteral("Connexion");
    case signUp:
        return QStringLiteral("Créer un compte");
    }
    Q_UNREACHABLE();
    return {};
}
