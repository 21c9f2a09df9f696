#pragma once

#include <QDate>
#include <QWidget>

class MonthView;
class PopupCard;
class TextLabel;

/// The days of a month to choose one from, dropped from a field. The arrows go from day to day, the
/// page keys from month to month; Escape closes it and chooses nothing.
class CalendarPopup : public QWidget {
    Q_OBJECT

public:
    CalendarPopup(QWidget *anchor, const QLocale &locale);

    /// Shows the month of `day`, which is marked, and returns at once.
    void open(QDate day);

Q_SIGNALS:
    void chosen(QDate day); ///< the calendar is closed already

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void choose(QDate day);
    void showMonth(int year, int month);

    PopupCard *m_card;
    TextLabel *m_title;
    MonthView *m_month;
};
