#include "sectionlist/SectionListAccessible.h"

#include "sectionlist/SectionListInterfaces.h"

namespace {

QAccessibleInterface *interfaceOf(const QString &, QObject *object)
{
    if (auto *list = qobject_cast<SectionList *>(object))
        return new SectionListInterface(list);
    if (auto *row = qobject_cast<SectionListRow *>(object))
        return new SectionListRowInterface(row);
    return nullptr;
}

} // namespace

void installSectionListAccessibility()
{
    static const bool installed = [] {
        QAccessible::installFactory(interfaceOf);
        return true;
    }();
    Q_UNUSED(installed)
}
