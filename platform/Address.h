#pragma once

#include <QStringView>
#include <QUrl>
#include <optional>

/// The address a request goes to, read strictly by the grammar of RFC 3986: a space, a quote, a
/// letter outside ASCII or a bad percent escape makes it none; nothing is escaped or repaired. An
/// address that is accepted but that QUrl cannot hold, or that has no host, comes back invalid:
/// there is nobody to ask.
std::optional<QUrl> requestAddress(QStringView text);

/// The host and port of an address, as they are written there, without what stands before an "@":
/// that may be a secret. Empty when there is no host.
QString hostAsWritten(QStringView text);

/// Whether an event's `link` is offered as a link: letters outside ASCII are allowed in it (RFC
/// 3987), spaces and other forbidden signs are not. It need not have a scheme.
bool formsLink(QStringView text);
