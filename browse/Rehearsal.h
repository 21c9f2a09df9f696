#pragma once

class QWidget;

/// Paints rows, a heading and the `tabs` above them as `window` will soon show them, for nobody to
/// see: faces, glyphs, symbols and the forms of dates, all dear where they are met for the first
/// time, are then at hand. To be called where there is time, such as while an answer is awaited;
/// in parts of some milliseconds, from 0 on, so that an answer need not wait for all of them.
/// False: it was the last one.
bool rehearseList(const QWidget &window, QWidget &tabs, int part);
