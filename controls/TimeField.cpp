#include "controls/TimeField.h"

#include "controls/FieldFrame.h"
#include "controls/PickerStyle.h"
#include "look/Fonts.h"

#include <QLineEdit>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace {

constexpr int fieldWidth = 80;
constexpr int symbolSize = 11;

} // namespace

TimeField::TimeField(const QString &name, const QLocale &locale, QWidget *parent)
    : QTimeEdit(parent)
{
    setLocale(locale);
    setDisplayFormat(u"HH:mm"_s);
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
