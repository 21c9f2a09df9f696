#pragma once

#include <QPointer>

#include <functional>
#include <optional>

class Sheet;

/// The place of one kind of sheet over a window: it holds an open sheet exactly while the window's
/// state asks for one, and of the item that it asks for.
class SheetSlot {
public:
    /// `item` names what the sheet is about, if one is asked for; with another name it is another
    /// sheet. `make` builds it; `onClosed` is called when it has closed, however that came, and
    /// must take the asking back.
    void keep(const std::optional<QString> &item, const std::function<Sheet *()> &make,
              const std::function<void()> &onClosed);

private:
    std::optional<QString> m_item;
    QPointer<Sheet> m_sheet;
};
