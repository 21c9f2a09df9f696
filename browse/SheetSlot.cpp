#include "browse/SheetSlot.h"

#include "controls/Sheet.h"

#include <utility>

void SheetSlot::keep(bool isAskedFor, const std::function<Sheet *()> &make,
                     const std::function<void()> &onClosed)
{
    if (isAskedFor == !m_sheet.isNull())
        return;
    if (isAskedFor) {
        m_sheet = make();
        QObject::connect(m_sheet, &Sheet::closed, m_sheet, onClosed);
        m_sheet->open();
        return;
    }
    // Later: it may be this very sheet that tells of its closing.
    Sheet *sheet = std::exchange(m_sheet, nullptr);
    sheet->close();
    sheet->deleteLater();
}
