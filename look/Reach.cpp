#include "look/Reach.h"

#include <QVariant>
#include <QWidget>

namespace {

constexpr const char *reachProperty = "isOutOfReach";

} // namespace

void setOutOfReach(QWidget *widget, bool isOut)
{
    widget->setProperty(reachProperty, isOut);
    widget->setEnabled(!isOut);
}

bool looksDisabled(const QWidget *control)
{
    return control->testAttribute(Qt::WA_ForceDisabled)
        && !control->property(reachProperty).toBool();
}
