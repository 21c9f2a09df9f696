#pragma once

#include <QString>

/// A text as a label of one line shows it: each line break a space, all else as it is, blanks too.
QString oneLine(QString text);
