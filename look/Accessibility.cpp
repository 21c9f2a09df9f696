#include "look/Accessibility.h"

#include <QAccessibleWidget>
#include <QPointer>
#include <QScrollBar>
#include <QVariant>
#include <QWidget>

namespace {

constexpr const char *roleProperty = "accessibleRole";
constexpr const char *modalProperty = "accessibleModal"; ///< of a window

/// What alone is within reach in a window, or null.
QWidget *modalIn(const QWidget *window)
{
    return window->property(modalProperty).value<QPointer<QWidget>>();
}

/// A widget whose role is a property and whose press and choice are its own; without the property,
/// a plain window.
class RoleInterface final : public QAccessibleWidget {
public:
    explicit RoleInterface(QWidget *widget)
        : QAccessibleWidget(widget)
    {
    }

    QAccessible::Role role() const override
    {
        const QVariant role = object()->property(roleProperty);
        return role.isValid() ? static_cast<QAccessible::Role>(role.toInt()) : QAccessible::Window;
    }

    QString text(QAccessible::Text kind) const override
    {
        // Without this the tooltip stands in for a missing description: with its markup, and mostly
        // to say the name once more.
        return kind == QAccessible::Description ? widget()->accessibleDescription()
                                                : QAccessibleWidget::text(kind);
    }

    int childCount() const override { return modal() ? 1 : QAccessibleWidget::childCount(); }

    QAccessibleInterface *child(int index) const override
    {
        if (!modal())
            return QAccessibleWidget::child(index);
        return index == 0 ? QAccessible::queryAccessibleInterface(modal()) : nullptr;
    }

    int indexOfChild(const QAccessibleInterface *child) const override
    {
        if (!modal())
            return QAccessibleWidget::indexOfChild(child);
        return child && child->object() == modal() ? 0 : -1;
    }

    QAccessibleInterface *childAt(int x, int y) const override
    {
        return modal() && rect().contains(x, y) ? QAccessible::queryAccessibleInterface(modal())
                                                : QAccessibleWidget::childAt(x, y);
    }

    QAccessible::State state() const override
    {
        auto state = QAccessibleWidget::state();
        state.modal = state.modal || modalIn(widget()->window()) == widget();
        const bool choosable = role() == QAccessible::ListItem || role() == QAccessible::PageTab;
        if (const auto *item = pressable(); item && choosable) {
            state.selectable = true;
            state.selected = item->isChosen();
        }
        const auto *opener = pressable();
        if (const auto isOpen = opener ? opener->isOpen() : std::nullopt) {
            state.hasPopup = true;
            state.expandable = true;
            state.expanded = *isOpen;
            state.collapsed = !*isOpen;
        }
        state.readOnly = role() == QAccessible::StaticText;
        return state;
    }

    QStringList actionNames() const override
    {
        auto names = QAccessibleWidget::actionNames();
        if (pressable() && widget()->isEnabled())
            names.prepend(pressAction());
        return names;
    }

    void doAction(const QString &name) override
    {
        auto *item = pressable();
        if (item && name == pressAction() && widget()->isEnabled())
            item->press();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    QWidget *modal() const { return widget()->isWindow() ? modalIn(widget()) : nullptr; }
    Pressable *pressable() const { return dynamic_cast<Pressable *>(object()); }
};

/// A scroll bar as the toolkit shows it, but for one that is out of reach: it stays where it is.
class ScrollBarInterface final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit ScrollBarInterface(QScrollBar *bar)
        : QAccessibleWidget(bar, QAccessible::ScrollBar)
    {
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface *>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? QString::number(bar()->value())
                                          : QAccessibleWidget::text(kind);
    }

    QVariant currentValue() const override { return bar()->value(); }
    void setCurrentValue(const QVariant &value) override
    {
        if (bar()->isEnabled())
            bar()->setValue(value.toInt());
    }
    QVariant maximumValue() const override { return bar()->maximum(); }
    QVariant minimumValue() const override { return bar()->minimum(); }
    QVariant minimumStepSize() const override { return bar()->singleStep(); }

private:
    QScrollBar *bar() const { return static_cast<QScrollBar *>(object()); }
};

/// Asked for each class of the object, from its own up to QObject.
QAccessibleInterface *interfaceOf(const QString &className, QObject *object)
{
    auto *widget = qobject_cast<QWidget *>(object);
    if (!widget)
        return nullptr;
    if (className == QLatin1StringView("QScrollBar"))
        return new ScrollBarInterface(static_cast<QScrollBar *>(object));
    // The toolkit takes a window that is no more than a widget for a filler, which readers skip.
    const bool isPlainWindow =
        className == QLatin1StringView("QWidget") && widget->windowType() == Qt::Window;
    if (!isPlainWindow && !widget->property(roleProperty).isValid())
        return nullptr;
    return new RoleInterface(widget);
}

} // namespace

void installAccessibility()
{
    static const bool installed = [] {
        QAccessible::installFactory(interfaceOf);
        return true;
    }();
    Q_UNUSED(installed)
}

void setAccessibleRole(QWidget *widget, QAccessible::Role role)
{
    widget->setProperty(roleProperty, static_cast<int>(role));
    // An interface made before, for the class's role, is kept until it is dropped.
    auto *interface = QAccessible::queryAccessibleInterface(widget);
    if (interface && !dynamic_cast<RoleInterface *>(interface))
        QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(interface));
}

void setAccessibleModal(QWidget *widget, bool isModal)
{
    QWidget *window = widget->window();
    if (isModal)
        window->setProperty(modalProperty, QVariant::fromValue(QPointer(widget)));
    else if (modalIn(window) == widget)
        window->setProperty(modalProperty, QVariant());
}
