#pragma once

#include "service/Authentication.h"
#include "service/RestReading.h"

/// Sends each request to the interface that it is meant for. Any thread may call it.
class Router {
public:
    Router(const Rest &rest, Authentication &authentication, const Keys &keys)
        : m_rest(rest)
        , m_authentication(authentication)
        , m_keys(keys)
    {
    }

    Reply answer(const Call &call) const;

private:
    Reply route(const Call &call) const;
    Reply answerRest(const Call &call) const;

    const Rest &m_rest;
    Authentication &m_authentication;
    const Keys &m_keys;
};
