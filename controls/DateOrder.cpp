#include "controls/DateOrder.h"

#include <QLocale>

using namespace Qt::StringLiterals;

namespace {

QString figuresFor(QChar field)
{
    if (field == u'd')
        return u"dd"_s;
    if (field == u'M')
        return u"MM"_s;
    if (field == u'y')
        return u"yyyy"_s;
    return {};
}

} // namespace

QString dateInFigures(const QLocale &locale)
{
    const QString shortForm = locale.dateFormat(QLocale::ShortFormat);
    QString figures;
    QString separator;
    QString seen;
    bool isQuoted = false;
    for (const QChar c : shortForm) {
        if (c == u'\'')
            isQuoted = !isQuoted;
        if (isQuoted || c == u'\'')
            continue; // words, such as an abbreviated "year"
        const QString field = figuresFor(c);
        if (field.isEmpty()) {
            separator += c;
        } else if (!seen.contains(c)) {
            figures += (seen.isEmpty() ? QString() : separator) + field;
            seen += c;
            separator.clear();
        }
    }
    return seen.size() == 3 ? figures : u"yyyy-MM-dd"_s;
}
