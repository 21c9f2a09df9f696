#include "platform/JsonText.h"

#include <QStringEncoder>

QByteArray jsonText(QStringView text)
{
    // Not QStringView::toUtf8, which writes a question mark for half of a surrogate pair.
    QStringEncoder encoder(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless);
    const QByteArray utf8 = encoder(text);
    QByteArray json;
    json.reserve(utf8.size() + 2);
    json += '"';
    for (const char c : utf8) {
        switch (c) {
        case '"':
            json += "\\\"";
            break;
        case '\\':
            json += "\\\\";
            break;
        case '\n':
            json += "\\n";
            break;
        case '\r':
            json += "\\r";
            break;
        case '\t':
            json += "\\t";
            break;
        default:
            if (static_cast<unsigned char>(c) < 0x20)
                json += "\\u" + QByteArray::number(int{c}, 16).rightJustified(4, '0');
            else
                json += c;
        }
    }
    return json + '"';
}

void JsonObjectWriter::add(const char *key, const QStringList &texts)
{
    QByteArray list;
    for (const QString &text : texts)
        list += (list.isEmpty() ? "" : ",") + jsonText(text);
    addJson(key, '[' + list + ']');
}

void JsonObjectWriter::addJson(const char *key, const QByteArray &value)
{
    m_members += (m_members.isEmpty() ? "\"" : ",\"") + QByteArray(key) + "\":" + value;
}
