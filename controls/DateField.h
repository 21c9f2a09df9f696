#pragma once

#include <QDateEdit>

class CalendarPopup;

/// A field for a day of the Gregorian calendar, written in a locale's own order and digits, with a
/// calendar to choose from: by a click on its symbol, Alt+Down or F4. The wheel changes it only
/// while it has the focus.
///
/// It shows days of the years 100 to 9999 and holds the nearest of them for any other.
class DateField : public QDateEdit {
    Q_OBJECT

public:
    /// `name` says to screen readers what the day is for.
    DateField(const QString &name, const QLocale &locale, QWidget *parent = nullptr);

    void openCalendar();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    CalendarPopup *m_calendar;
};
