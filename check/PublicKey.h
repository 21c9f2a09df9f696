#pragma once

#include <QStringView>

/// Whether the text is a key that passes every rule of a project, and so must be in no package: a
/// "sb_secret_" key, or a JSON Web Token for the role "service_role" (RFC 7519; the signature is
/// not looked at).
bool isSecretKey(QStringView key);
