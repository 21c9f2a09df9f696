#pragma once

class QWidget;

/// Paints a row and a heading as `window` will soon show them, for nobody to see: faces, glyphs,
/// symbols and the forms of dates, all dear where they are met for the first time, are then at
/// hand. To be called where there is time, such as while an answer is awaited.
void rehearseList(const QWidget &window);
