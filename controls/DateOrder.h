#pragma once

class QLocale;
class QString;

/// How a day is written in figures where this locale is used, as QDate's texts take it: its own
/// order and separators, two figures for day and month, all of the year. fr_FR: "dd/MM/yyyy".
QString dateInFigures(const QLocale &locale);
