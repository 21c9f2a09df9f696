#pragma once

#include <QByteArray>
#include <QStringView>

/// `text` as a JSON string, quotes included, in UTF-8. It reads back identically; half of a
/// surrogate pair, which no text in UTF-8 can hold, becomes U+FFFD.
QByteArray jsonText(QStringView text);
