#include "controls/TimeField.h"

#include "controls/FieldFrame.h"
#include "controls/Fonts.h"
#include "controls/PickerStyle.h"

#include <QLineEdit>
#include <QWheelEvent>

namespace {

constexpr int fieldWidth = 80;
constexpr int symbolSize = 11;

} // namespace

TimeField::TimeField(const QString &name, const QLocale &locale, QWidget *parent)
    : QTimeEdit(parent)
{
    setLocale(locale);
    setDisplayFormat(QStringLiteral("HH:mm"));
    setWrapping(true);
    PickerStyle::dress(this, lineEdit(), name, Symbol::Stepper, symbolSize);
}

QSize TimeField::sizeHint() const
{
    return {scaled(fieldWidth), fieldHeight()};
}

void TimeField::wheelEvent(QWheelEvent *event)
{
    if (hasFocus())
        QTimeEdit::wheelEvent(event);
    else
        event->ignore();
}
