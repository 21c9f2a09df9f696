#pragma once

#include "backend/Session.h"
#include "backend/SupabaseError.h"

#include <functional>
#include <optional>

using namespace Qt::StringLiterals;

/// Somebody who is signed in.
inline Session member()
{
    Session session;
    session.accessToken = u"jeton"_s;
    return session;
}

/// What `action` throws of the closed type, if it does.
inline std::optional<SupabaseError> errorOf(const std::function<void()> &action)
{
    try {
        action();
    } catch (const SupabaseError &error) {
        return error;
    }
    return std::nullopt;
}
