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

TimeField::TimeField(const QString &name, const QLocale &locale, Hours hours, QWidget *parent)
    : QTimeEdit(parent)
{
    setLocale(locale);
    setDisplayFormat(hours == Hours::TwiceTwelve ? u"h:mm AP"_s : u"HH:mm"_s);
    setWrapping(true);
    PickerStyle::dress(this, lineEdit(), name, Symbol::Stepper, symbolSize);
}

QSize TimeField::sizeHint() const
{
    constexpr int hoursOfDay = 24;
    QStringList widest;
    for (int hour = 0; hour < hoursOfDay; ++hour)
        widest.append(locale().toString(QTime(hour, 58), displayFormat()));
    return {PickerStyle::widthFor(widest, fieldWidth), fieldHeight()};
}

void TimeField::wheelEvent(QWheelEvent *event)
{
    if (hasFocus())
        QTimeEdit::wheelEvent(event);
    else
        event->ignore();
}
