#pragma once

#include <QByteArray>
#include <QStringList>
#include <QStringView>

#include <optional>

/// `text` as a JSON string, quotes included, in UTF-8. It reads back identically; half of a
/// surrogate pair, which no text in UTF-8 can hold, becomes U+FFFD.
QByteArray jsonText(QStringView text);

/// A JSON object that is written member by member, in the order in which they are added.
/// (QJsonObject would sort its keys.)
class JsonObjectWriter {
public:
    void add(const char *key, const QString &text) { addJson(key, jsonText(text)); }
    void add(const char *key, const QStringList &texts);
    /// Leaves the member out where there is no value.
    template <typename Value>
    void add(const char *key, const std::optional<Value> &value)
    {
        if (value)
            add(key, *value);
    }

    QByteArray object() const { return '{' + m_members + '}'; }

private:
    void addJson(const char *key, const QByteArray &value);

    QByteArray m_members;
};
