#pragma once

#include <QString>
#include <QStringView>
#include <optional>

/// `text` without white space and line breaks at both ends, code point by code point: it may leave
/// a lone combining mark. White space here is what Foundation strips: U+200B,
/// U+0085 and U+00A0 among it, U+FEFF, U+180E and U+2060 not.
QString trimmed(QStringView text);

/// Whether two texts are the same, canonically equivalent spellings (é, e + accent) being equal.
bool sameText(QStringView a, QStringView b);

/// One spelling for all canonically equivalent ones (NFC): equal exactly when sameText holds.
/// Shares its argument's storage when that is canonical already.
QString canonical(const QString &text);

/// Whether `a` comes before `b` by the code points of their canonical composed forms.
bool beforeByCharacter(QStringView a, QStringView b);

/// The number of characters as a person sees them (extended grapheme clusters).
qsizetype characterCount(QStringView text);

/// The first `count` characters as a person sees them; the whole text when it has no more.
QString firstCharacters(QStringView text, qsizetype count);

/// Each word with its first letter in upper case and the rest in lower case.
QString capitalised(QStringView text);

/// `bytes` as text when they are valid UTF-8, else nothing.
std::optional<QString> textOfUtf8(QByteArrayView bytes);
