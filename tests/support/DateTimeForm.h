#pragma once

#include "controls/CalendarPopup.h"
#include "controls/DateField.h"
#include "controls/TimeField.h"
#include "support/Picture.h"
#include "support/Typing.h"

#include <QApplication>
#include <QLocale>
#include <QScrollArea>
#include <QTest>

using namespace Qt::StringLiterals;

/// A form that scrolls, with both fields, in front. Counts the cancels that reach it.
class DateTimeForm : public QScrollArea {
public:
    explicit DateTimeForm(const QString &locale = u"fr_FR"_s,
                          TimeField::Hours hours = TimeField::Hours::TwentyFour)
        : date(new DateField(u"Date"_s, QLocale(locale), content))
        , time(new TimeField(u"Heure"_s, QLocale(locale), hours, content))
    {
        content->setFixedSize(380, 900);
        date->setDate(QDate(2026, 11, 14));
        time->setTime(QTime(14, 30));
        date->move(20, 100);
        time->move(200, 100);
        setWidget(content);
        resize(400, 400);
        show();
        activateWindow();
        if (!QTest::qWaitForWindowActive(this))
            qFatal("the window does not come to the front");
        QApplication::focusWidget()->clearFocus();
    }

    CalendarPopup *calendar() const { return date->findChild<CalendarPopup *>(); }

    QWidget *content = new QWidget;
    DateField *date;
    TimeField *time;
    int cancels = 0;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() == Qt::Key_Escape)
            ++cancels;
    }
};

inline QColor colorAt(DateTimeForm &form, const QWidget *field, QPoint at)
{
    return picture(form).pixelColor(field->mapTo(&form, at));
}
