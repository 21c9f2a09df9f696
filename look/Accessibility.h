#pragma once

#include <QAccessible>

#include <optional>

class QWidget;

/// Makes the roles below reach screen readers, and makes plain widgets that are windows read as
/// such. Call once, after the application object is made; further calls do nothing.
void installAccessibility();

/// The role that a widget has for screen readers, in place of the one of its class: list, list
/// item, heading, alert... Its name and description are its accessible ones; its tooltip is for the
/// eye alone.
void setAccessibleRole(QWidget *widget, QAccessible::Role role);

/// Whether a widget, a child of its window, is all of that window that a screen reader gets at. The
/// last one to become so counts.
void setAccessibleModal(QWidget *widget, bool isModal);

/// What a custom widget implements, beside QWidget, to be pressed or chosen through a screen
/// reader. It works for widgets with a role set as above.
class Pressable {
public:
    virtual ~Pressable() = default;

    virtual void press() = 0; ///< do what a click does
    virtual bool isChosen() const { return false; } ///< selected among its siblings
    /// Whether what it opens beside itself is open; none for what opens nothing so.
    virtual std::optional<bool> isOpen() const { return {}; }
};
