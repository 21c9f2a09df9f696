#pragma once

#include <QPointer>

#include <functional>

class Sheet;

/// The place of one kind of sheet over a window: it holds an open sheet exactly while the window's
/// state asks for one.
class SheetSlot {
public:
    /// `make` builds the sheet each time one is newly asked for; `onClosed` is called when it has
    /// closed, however that came, and must take the asking back.
    void keep(bool isAskedFor, const std::function<Sheet *()> &make,
              const std::function<void()> &onClosed);

private:
    QPointer<Sheet> m_sheet;
};
