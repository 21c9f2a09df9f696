#pragma once

#include <QStringView>
#include <QUrl>
#include <optional>

/// The address a request goes to, read strictly by the grammar of RFC 3986: a space, a quote, a
/// letter outside ASCII or a bad percent escape makes it none; nothing is escaped or repaired. An
/// address that is accepted but that QUrl cannot hold, or that has no host, comes back as one whose
/// host cannot be found: asking for it fails as such a host does, and sends nothing.
std::optional<QUrl> requestAddress(QStringView text);

/// Whether an event's `link` is offered as a link: letters outside ASCII are allowed in it (RFC
/// 3987), spaces and other forbidden signs are not. It need not have a scheme.
bool formsLink(QStringView text);
