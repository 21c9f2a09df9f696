#include "controls/CalendarPopup.h"

#include "controls/IconButton.h"
#include "controls/PopupCard.h"
#include "controls/TextLabel.h"
#include "look/Colors.h"
#include "look/Fonts.h"
#include "look/Painting.h"

#include <QCalendarWidget>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPainter>
#include <QTableView>
#include <QTextCharFormat>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int gapToAnchor = 4;
constexpr int padding = 8;
constexpr int spacing = 4;
constexpr int cellWidth = 32;
constexpr int cellHeight = 26;
constexpr int cellRadius = 6;
constexpr int weeksAndHeading = 7;

} // namespace

/// The toolkit's calendar without its own navigation, in the application's colours.
class MonthView : public QCalendarWidget {
public:
    MonthView(const QLocale &locale, QWidget *parent)
        : QCalendarWidget(parent)
    {
        setLocale(locale);
        setFirstDayOfWeek(locale.firstDayOfWeek());
        setNavigationBarVisible(false);
        setVerticalHeaderFormat(NoVerticalHeader);
        setHorizontalHeaderFormat(ShortDayNames);
        setDateEditEnabled(false);
        setFont(appFont(13));
        // The columns share the width, however wide the toolkit would have them for its own font.
        if (auto *table = findChild<QTableView *>())
            table->horizontalHeader()->setMinimumSectionSize(1);
        setFixedSize(7 * scaled(cellWidth), weeksAndHeading * scaled(cellHeight));
    }

    /// Takes over the colours of the palette as it is now.
    void updateColors()
    {
        const QPalette &of = parentWidget()->palette();
        QPalette colors;
        colors.setColor(QPalette::Base, popupColor(of));
        setPalette(colors);
        QTextCharFormat days;
        days.setForeground(secondaryText(of));
        days.setBackground(popupColor(of));
        days.setFont(appFont(11));
        setHeaderTextFormat(days);
        for (const auto day : {Qt::Saturday, Qt::Sunday})
            setWeekdayTextFormat(day, days);
    }

protected:
    void paintCell(QPainter *painter, const QRect &rect, QDate date) const override
    {
        const bool isSelected = date == selectedDate();
        const bool isOfMonth = date.month() == monthShown() && date.year() == yearShown();
        painter->fillRect(rect, popupColor(palette()));
        if (isSelected)
            fillRounded(*painter, rect, cellRadius, accent(palette()));
        else if (date == QDate::currentDate())
            strokeRounded(*painter, rect, cellRadius, accentInk(palette()));
        painter->setFont(font());
        if (isSelected)
            painter->setPen(accentText(palette()));
        else
            painter->setPen(isOfMonth ? primaryText(palette()) : secondaryText(palette()));
        painter->drawText(rect, Qt::AlignCenter, locale().toString(date.day()));
    }
};

CalendarPopup::CalendarPopup(QWidget *anchor, const QLocale &locale)
    : QWidget(anchor, Qt::Popup)
    , m_card(new PopupCard(this, anchor, PopupAlignment::Left, gapToAnchor))
    , m_title(new TextLabel({}, appFont(13, QFont::DemiBold), primaryText, this))
    , m_month(new MonthView(locale, this))
{
    setLocale(locale);
    setAccessibleName(u"Calendrier"_s);
    auto *previous = new IconButton(Symbol::ChevronLeft, u"Mois précédent"_s, secondaryText, this);
    auto *next = new IconButton(Symbol::ChevronRight, u"Mois suivant"_s, secondaryText, this);
    connect(previous, &QAbstractButton::clicked, m_month, &QCalendarWidget::showPreviousMonth);
    connect(next, &QAbstractButton::clicked, m_month, &QCalendarWidget::showNextMonth);
    connect(m_month, &QCalendarWidget::currentPageChanged, this, &CalendarPopup::showMonth);
    connect(m_month, &QCalendarWidget::clicked, this, &CalendarPopup::choose);
    connect(m_month, &QCalendarWidget::activated, this, &CalendarPopup::choose);

    auto *heading = new QHBoxLayout;
    heading->addSpacing(padding);
    heading->addWidget(m_title, 1, Qt::AlignVCenter);
    heading->addWidget(previous);
    heading->addWidget(next);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(m_card->margins() + QMargins(padding, padding, padding, padding));
    column->setSpacing(spacing);
    column->addLayout(heading);
    column->addWidget(m_month);
}

void CalendarPopup::open(QDate day)
{
    m_month->updateColors();
    m_month->setSelectedDate(day);
    m_month->setCurrentPage(day.year(), day.month());
    showMonth(day.year(), day.month());
    setGeometry(m_card->placeOfWindow(sizeHint()));
    show();
    m_month->setFocus(Qt::PopupFocusReason);
}

void CalendarPopup::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        m_month->updateColors();
}

void CalendarPopup::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    m_card->paint(painter);
}

void CalendarPopup::choose(QDate day)
{
    // A double click chooses once.
    if (!isVisible())
        return;
    close();
    Q_EMIT chosen(day);
}

void CalendarPopup::showMonth(int year, int month)
{
    QString name = locale().standaloneMonthName(month);
    name.replace(0, 1, locale().toUpper(name.first(1)));
    m_title->setText(name + u' ' + QString::number(year));
}
