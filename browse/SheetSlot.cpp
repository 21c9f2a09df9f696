#include "browse/SheetSlot.h"

#include "controls/Sheet.h"

#include <utility>

void SheetSlot::keep(const std::optional<QString> &item, const std::function<Sheet *()> &make,
                     const std::function<void()> &onClosed)
{
    if (item == m_item)
        return;
    m_item = item;
    if (Sheet *old = std::exchange(m_sheet, nullptr)) {
        // Not asked for any more, it has nothing to take back.
        QObject::disconnect(old, &Sheet::closed, nullptr, nullptr);
        old->close();
        // Later: it may be this very sheet that tells of its closing.
        old->deleteLater();
    }
    if (!item)
        return;
    m_sheet = make();
    QObject::connect(m_sheet, &Sheet::closed, m_sheet, onClosed);
    m_sheet->open();
}
