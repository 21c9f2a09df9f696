#pragma once

#include "walk/WalkState.h"

#include <optional>

class ContentView;
class QPoint;
class QWidget;

/// Finding one's way in a window that is open, by what is seen of it.
namespace Finding {

/// The visible row of this title in the list in view.
QWidget *row(ContentView *window, const QString &title);
/// Notes where the eye and the hands are, in a window that is at rest.
void look(ContentView *window, WalkState &state);
/// The pointer trembles there, as a hand does: what came to lie under it hears of it only then.
/// Less than 0: it is not over the window.
void point(ContentView *window, QPoint at);
/// Puts the text in place of what the field of the open form holds.
void type(ContentView *window, const QString &field, const QString &text);
/// Puts eye and hands there.
void follow(ContentView *window, const WalkState &state);
/// Whether the widget with the focus shows so.
bool showsRing(const QWidget *focus);
/// The title that tells the reply that the window last showed from others; empty for one without
/// events. Also where the lists give way to something else.
QString mark(const ContentView *window);
/// The text of the failure that is shown, or waits to be; else empty.
QString failure(const ContentView *window);
/// The titles that a screen reader finds in the list in view.
QStringList titles(ContentView *window);

} // namespace Finding
