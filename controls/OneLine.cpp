#include "controls/OneLine.h"

using namespace Qt::StringLiterals;

QString oneLine(QString text)
{
    text.replace(u"\r\n"_s, u" "_s);
    for (QChar &c : text) {
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator
            || c == QChar::ParagraphSeparator)
            c = u' ';
    }
    return text;
}
