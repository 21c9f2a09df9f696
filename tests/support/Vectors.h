#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <variant>

/// Recorded questions and answers: files of the form {"note": text, "cases": [record, ...]}.
///
/// They are read from the folder that the environment variable AMORVELLE_VECTORS names, else from
/// tests/data; so further cases of the same form can be run without a change.
namespace Vectors {

/// The kinds of JSON value a key may have, to be joined by |.
enum Kind { Null = 1, Flag = 2, Number = 4, Text = 8, List = 16, Record = 32, Absent = 64 };

/// A key of a case. A case that lacks one (unless `kinds` has Absent), has another, or has a value
/// of another kind is of unknown form.
struct Key {
    QString name;
    int kinds = Text;
};

/// The answers to one case, compared as JSON values: texts by code units, numbers by value.
struct Answer {
    QJsonValue wanted;
    QJsonValue given;
};

using Cases = QList<QJsonObject>;
/// Why a file cannot be used.
struct Problem {
    QString text;
};

/// All cases of the file at `path`, which must be there, hold at least one case, and hold no case
/// of another form than `form`.
std::variant<Cases, Problem> read(const QString &path, const QList<Key> &form);

/// Asks `answer` about every case of `name` (as in "instants.json"), prints those whose answers
/// differ with question, wanted and given answer, and at the end how many cases were checked.
/// Whether the file could be used and no case failed.
bool check(const QString &name, const QList<Key> &form,
           const std::function<Answer(const QJsonObject &)> &answer);

/// The texts of a list.
QStringList texts(const QJsonValue &list);
/// Texts as an answer that leaves open which of canonically equal spellings is meant.
QJsonArray spelledAlike(const QStringList &texts);

} // namespace Vectors
