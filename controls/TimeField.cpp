#include "controls/TimeField.h"

#include "controls/EndOfComposition.h"
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
    setFocusPolicy(Qt::StrongFocus);
    setFont(appFont(13));
    setAccessibleName(name);
    setFixedSize(sizeHint());
    addFieldRing(this);
    new EndOfComposition(lineEdit());

    auto *ownStyle = new PickerStyle(Symbol::Stepper, symbolSize);
    ownStyle->setParent(this);
    setStyle(ownStyle);
    QPalette clear;
    clear.setColor(QPalette::Base, Qt::transparent); // the field's fill has round corners
    lineEdit()->setPalette(clear);
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
