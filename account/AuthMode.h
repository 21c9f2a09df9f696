#pragma once

#include <QString>

#include <array>
#include <optional>

/// What the sign-in form does: sign in to an account, or create one.
class AuthMode {
public:
    enum Case { signIn, signUp };

    /// In the order in which they are offered.
    static const std::array<AuthMode, 2> allCases;

    constexpr AuthMode(Case value)
        : m_case(value)
    {
    }
    /// The mode with this raw value, which is compared letter by letter; none for any other text.
    static std::optional<AuthMode> fromRawValue(const QString &rawValue);

    /// Its label, which identifies it too.
    QString rawValue() const;
    QString id() const { return rawValue(); }

    friend constexpr bool operator==(AuthMode, AuthMode) = default;

private:
    Case m_case;
};

inline constexpr std::array<AuthMode, 2> AuthMode::allCases{AuthMode::signIn, AuthMode::signUp};
