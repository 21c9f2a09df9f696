#pragma once

#include "service/Accounts.h"
#include "service/Reply.h"

#include <string>

Reply jsonReply(const std::string &body);

/// The reply that begins a session or goes on with it: an access token, valid for `tokenSeconds`
/// from now, the refresh token and the account. `issuer` is the address of the accounts' interface.
Reply sessionReply(const Account &account, const RefreshGrant &grant, const std::string &issuer,
                   int tokenSeconds, const std::string &secret);
