#pragma once

#include <QTimeEdit>

/// A field for a time of day, hours and minutes in a locale's own digits, with two small arrows.
/// The wheel changes it only while it has the focus.
class TimeField : public QTimeEdit {
    Q_OBJECT

public:
    /// How the hours of a day are counted: from 0 to 23, or twice to 12.
    enum class Hours { TwentyFour, TwiceTwelve };

    /// `name` says to screen readers what the time is for.
    TimeField(const QString &name, const QLocale &locale, Hours hours = Hours::TwentyFour,
              QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void wheelEvent(QWheelEvent *event) override;
};
