#pragma once

#include "backend/LocalizedError.h"
#include "platform/DecodingError.h"

/// A success of the authentication interface whose body is no session: the decoder's own error,
/// passed on unchanged.
class UndecodableReply final : public LocalizedError {
public:
    explicit UndecodableReply(const DecodingError &error)
        : m_error(error)
    {
    }

    QString localizedDescription() const override { return m_error.description; }
    const char *what() const noexcept override { return "UndecodableReply"; }

private:
    DecodingError m_error;
};
