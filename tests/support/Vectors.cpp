#include "support/Vectors.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

int kindOf(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Null:
        return Vectors::Null;
    case QJsonValue::Bool:
        return Vectors::Flag;
    case QJsonValue::Double:
        return Vectors::Number;
    case QJsonValue::String:
        return Vectors::Text;
    case QJsonValue::Array:
        return Vectors::List;
    case QJsonValue::Object:
        return Vectors::Record;
    case QJsonValue::Undefined:
        break;
    }
    return Vectors::Absent;
}

bool hasForm(const QJsonObject &record, const QList<Vectors::Key> &form)
{
    const bool isKept = std::ranges::all_of(form, [&](const Vectors::Key &key) {
        return (kindOf(record.value(key.name)) & key.kinds) != 0;
    });
    const QStringList names = record.keys();
    return isKept && std::ranges::all_of(names, [&](const QString &name) {
               return std::ranges::any_of(
                   form, [&](const Vectors::Key &key) { return key.name == name; });
           });
}

// As JSON in which everything outside ASCII is escaped, so that what differs can be seen.
QByteArray shown(const QJsonValue &value)
{
    if (value.isUndefined())
        return "nothing";
    const QByteArray json = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    QByteArray result;
    for (const QChar c : QString::fromUtf8(json.sliced(1, json.size() - 2))) {
        if (c.unicode() < 0x7F)
            result += static_cast<char>(c.unicode());
        else
            result += "\\u" + QByteArray::number(c.unicode(), 16).rightJustified(4, '0');
    }
    return result;
}

void print(const QByteArray &line)
{
    std::printf("%s\n", line.constData());
    std::fflush(stdout);
}

QString folder()
{
    const QString named = qEnvironmentVariable("AMORVELLE_VECTORS");
    return named.isEmpty() ? QStringLiteral(AMORVELLE_TEST_DATA) : named;
}

} // namespace

std::variant<Vectors::Cases, Vectors::Problem> Vectors::read(const QString &path,
                                                             const QList<Key> &form)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Problem{path + u": "_s + file.errorString()};
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (document.isNull())
        return Problem{path + u": "_s + error.errorString()};
    if (!hasForm(document.object(), {{u"note"_s, Text}, {u"cases"_s, List}}))
        return Problem{path + u": not one record of a note and cases"_s};

    Cases cases;
    const QJsonArray list = document.object().value(u"cases"_s).toArray();
    for (const auto &value : list) {
        if (!value.isObject() || !hasForm(value.toObject(), form))
            return Problem{path + u": a case of unknown form: "_s
                           + QString::fromUtf8(shown(value))};
        cases.append(value.toObject());
    }
    if (cases.isEmpty())
        return Problem{path + u": no cases"_s};
    return cases;
}

bool Vectors::check(const QString &name, const QList<Key> &form,
                    const std::function<Answer(const QJsonObject &)> &answer)
{
    const auto read = Vectors::read(QDir(folder()).filePath(name), form);
    if (const Problem *const problem = std::get_if<Problem>(&read)) {
        print(problem->text.toUtf8());
        return false;
    }
    const Cases &cases = std::get<Cases>(read);
    qsizetype failures = 0;
    for (const QJsonObject &question : cases) {
        const Answer given = answer(question);
        if (given.wanted == given.given)
            continue;
        ++failures;
        print(name.toUtf8() + ": asked " + shown(question) + "\n    wanted " + shown(given.wanted)
              + "\n    given  " + shown(given.given));
    }
    print(name.toUtf8() + ": " + QByteArray::number(cases.size()) + " cases checked, "
          + QByteArray::number(failures) + " failed");
    return failures == 0;
}

QStringList Vectors::texts(const QJsonValue &list)
{
    QStringList result;
    for (const auto &text : list.toArray())
        result.append(text.toString());
    return result;
}

QJsonArray Vectors::spelledAlike(const QStringList &texts)
{
    QJsonArray list;
    for (const QString &text : texts)
        list.append(text.normalized(QString::NormalizationForm_C));
    return list;
}
