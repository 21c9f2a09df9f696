#pragma once

class QWidget;

/// Puts a widget and all that lies in it out of reach, as under a sheet, or within reach again: it
/// is disabled, and looks as before.
void setOutOfReach(QWidget *widget, bool isOut);

/// Whether a control is to look as one that cannot be used: it is disabled on its own account, and
/// not only out of reach for now.
bool looksDisabled(const QWidget *control);
