#include "account/AuthMode.h"

using namespace Qt::StringLiterals;

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
        return u"Connexion"_s;
    case signUp:
        return u"Créer un compte"_s;
    }
    Q_UNREACHABLE();
    return {};
}
