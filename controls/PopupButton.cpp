#include "controls/PopupButton.h"

#include "controls/Menu.h"
#include "look/Fonts.h"

#include <utility>

namespace {

constexpr int buttonWidth = 220;

} // namespace

PopupButton::PopupButton(const QString &name, const QStringList &choices, QWidget *parent)
    : PopupLabel(name, parent)
    , m_choices(choices)
{
    connect(menu(), &Menu::chosen, this, [this](int index) { Q_EMIT chosen(m_choices[index]); });
}

void PopupButton::setValue(const QString &value)
{
    QList<MenuItem> items;
    for (const QString &choice : std::as_const(m_choices))
        items.append({choice, choice == value});
    menu()->setItems(items);
    setLabel(value);
}

QSize PopupButton::sizeHint() const
{
    return {scaled(buttonWidth), PopupLabel::sizeHint().height()};
}
