#include "fuzz/SlowJson.h"

namespace {

constexpr int deepest = 512;

// The length of the character at the front of `bytes`; 0 when there is none. Table 3-7 of the
// Unicode standard, line by line.
size_t characterLength(std::string_view bytes)
{
    const auto within = [bytes](size_t at, unsigned first, unsigned last) {
        return at < bytes.size() && static_cast<unsigned char>(bytes[at]) >= first
            && static_cast<unsigned char>(bytes[at]) <= last;
    };
    if (within(0, 0x00, 0x7F))
        return 1;
    if (within(0, 0xC2, 0xDF) && within(1, 0x80, 0xBF))
        return 2;
    if ((within(0, 0xE0, 0xE0) && within(1, 0xA0, 0xBF) && within(2, 0x80, 0xBF))
        || (within(0, 0xE1, 0xEC) && within(1, 0x80, 0xBF) && within(2, 0x80, 0xBF))
        || (within(0, 0xED, 0xED) && within(1, 0x80, 0x9F) && within(2, 0x80, 0xBF))
        || (within(0, 0xEE, 0xEF) && within(1, 0x80, 0xBF) && within(2, 0x80, 0xBF)))
        return 3;
    if ((within(0, 0xF0, 0xF0) && within(1, 0x90, 0xBF) && within(2, 0x80, 0xBF)
         && within(3, 0x80, 0xBF))
        || (within(0, 0xF1, 0xF3) && within(1, 0x80, 0xBF) && within(2, 0x80, 0xBF)
            && within(3, 0x80, 0xBF))
        || (within(0, 0xF4, 0xF4) && within(1, 0x80, 0x8F) && within(2, 0x80, 0xBF)
            && within(3, 0x80, 0xBF)))
        return 4;
    return 0;
}

// The value of a character's bytes.
char32_t valueOf(std::string_view character)
{
    if (character.size() == 1)
        return static_cast<unsigned char>(character[0]);
    const unsigned bits = character.size() == 2 ? 0x1F : character.size() == 3 ? 0x0F : 0x07;
    char32_t value = static_cast<unsigned char>(character[0]) & bits;
    for (const char c : character.substr(1))
        value = value * 64 + (static_cast<unsigned char>(c) & 0x3F);
    return value;
}

class Parser {
public:
    explicit Parser(std::string_view rest)
        : m_rest(rest)
    {
    }

    std::optional<SlowJson> whole()
    {
        SlowJson value;
        skipBlanks();
        if (!readValue(value, 0))
            return std::nullopt;
        skipBlanks();
        if (!m_rest.empty())
            return std::nullopt;
        return value;
    }

private:
    void skipBlanks()
    {
        while (!m_rest.empty() && std::string_view(" \t\n\r").find(m_rest[0]) != m_rest.npos)
            m_rest.remove_prefix(1);
    }

    bool take(std::string_view wanted)
    {
        if (!m_rest.starts_with(wanted))
            return false;
        m_rest.remove_prefix(wanted.size());
        return true;
    }

    bool takeDigits()
    {
        const std::string_view before = m_rest;
        while (!m_rest.empty() && m_rest[0] >= '0' && m_rest[0] <= '9')
            m_rest.remove_prefix(1);
        return m_rest.size() < before.size();
    }

    bool readValue(SlowJson &value, int depth)
    {
        if (take("null"))
            return true;
        if (take("true") || take("false")) {
            value.kind = SlowJson::Kind::boolean;
            return true;
        }
        if (m_rest.starts_with('"')) {
            value.kind = SlowJson::Kind::text;
            return readText(value.text);
        }
        if (m_rest.starts_with('[') || m_rest.starts_with('{'))
            return depth < deepest && readMany(value, depth + 1);
        value.kind = SlowJson::Kind::number;
        return readNumber();
    }

    bool readNumber()
    {
        take("-");
        if (!take("0") && !takeDigits())
            return false;
        if (take(".") && !takeDigits())
            return false;
        if (take("e") || take("E")) {
            if (!take("+"))
                take("-");
            return takeDigits();
        }
        return true;
    }

    bool readMany(SlowJson &value, int depth)
    {
        const bool isRecord = take("{");
        if (!isRecord)
            take("[");
        const std::string_view end = isRecord ? "}" : "]";
        value.kind = isRecord ? SlowJson::Kind::record : SlowJson::Kind::list;
        skipBlanks();
        if (take(end))
            return true;
        for (;;) {
            skipBlanks();
            if (isRecord) {
                if (!m_rest.starts_with('"') || !readText(value.keys.emplace_back()))
                    return false;
                skipBlanks();
                if (!take(":"))
                    return false;
                skipBlanks();
            }
            if (!readValue(value.values.emplace_back(), depth))
                return false;
            skipBlanks();
            if (take(end))
                return true;
            if (!take(","))
                return false;
        }
    }

    bool readText(QString &text)
    {
        take("\"");
        while (!take("\"")) {
            if (take("\\")) {
                if (!readEscape(text))
                    return false;
                continue;
            }
            const size_t length = characterLength(m_rest);
            if (length == 0 || static_cast<unsigned char>(m_rest[0]) < 0x20)
                return false;
            text += QChar::fromUcs4(valueOf(m_rest.substr(0, length)));
            m_rest.remove_prefix(length);
        }
        return true;
    }

    bool readEscape(QString &text)
    {
        constexpr std::string_view letters = "\"\\/bfnrt";
        constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
        for (size_t i = 0; i < letters.size(); ++i) {
            if (take(letters.substr(i, 1))) {
                text += QChar::fromLatin1(meanings[i]);
                return true;
            }
        }
        const auto unit = readUnit();
        if (!unit || QChar::isLowSurrogate(*unit))
            return false;
        text += QChar(*unit);
        if (!QChar::isHighSurrogate(*unit))
            return true;
        if (!take("\\"))
            return false;
        const auto other = readUnit();
        if (!other || !QChar::isLowSurrogate(*other))
            return false;
        text += QChar(*other);
        return true;
    }

    std::optional<char16_t> readUnit()
    {
        if (!take("u") || m_rest.size() < 4)
            return std::nullopt;
        unsigned unit = 0;
        for (const char c : m_rest.substr(0, 4)) {
            const size_t digit = std::string_view("0123456789abcdef").find(c);
            const size_t upper = std::string_view("0123456789ABCDEF").find(c);
            if (digit == m_rest.npos && upper == m_rest.npos)
                return std::nullopt;
            unit = unit * 16 + static_cast<unsigned>(digit == m_rest.npos ? upper : digit);
        }
        m_rest.remove_prefix(4);
        return static_cast<char16_t>(unit);
    }

    std::string_view m_rest;
};

} // namespace

const SlowJson *SlowJson::find(const QString &key) const
{
    for (size_t i = 0; i < keys.size(); ++i) {
        if (keys[i] == key)
            return &values[i];
    }
    return nullptr;
}

std::optional<SlowJson> slowJson(std::string_view bytes)
{
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    return Parser(bytes).whole();
}

std::optional<QString> slowUtf8(std::string_view bytes)
{
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    QString text;
    while (!bytes.empty()) {
        const size_t length = characterLength(bytes);
        if (length == 0)
            return std::nullopt;
        text += QChar::fromUcs4(valueOf(bytes.substr(0, length)));
        bytes.remove_prefix(length);
    }
    return text;
}
