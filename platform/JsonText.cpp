#include "platform/JsonText.h"

QByteArray jsonText(QStringView text)
{
    const QByteArray utf8 = text.toUtf8();
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
            if (c >= 0 && c < 0x20)
                json += "\\u" + QByteArray::number(int{c}, 16).rightJustified(4, '0');
            else
                json += c;
        }
    }
    return json + '"';
}
