#include "controls/BusyIndicator.h"

#include "controls/Spinner.h"
#include "controls/TextLabel.h"
#include "look/Accessibility.h"
#include "look/Fonts.h"

#include <QVBoxLayout>

BusyIndicator::BusyIndicator(const QString &label, QWidget *parent)
    : QWidget(parent)
{
    setAccessibleName(label);
    setAccessibleRole(this, QAccessible::Notification);
    auto *text = new TextLabel(label, appFont(13), secondaryText, this);
    text->setAlignment(Qt::AlignHCenter);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addStretch();
    column->addWidget(new Spinner(this), 0, Qt::AlignHCenter);
    column->addSpacing(10);
    column->addWidget(text);
    column->addStretch();
}
