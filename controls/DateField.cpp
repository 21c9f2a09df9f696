#include "controls/DateField.h"

#include "controls/CalendarPopup.h"
#include "controls/DateOrder.h"
#include "controls/FieldFrame.h"
#include "controls/PickerStyle.h"
#include "look/Accessibility.h"
#include "look/Fonts.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QLineEdit>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int fieldWidth = 124;
constexpr int symbolSize = 14;

/// The symbol of the field as something to press. The field paints it.
class CalendarOpener final : public QAbstractButton, public Pressable {
public:
    CalendarOpener(const QWidget *calendar, QWidget *parent)
        : QAbstractButton(parent)
        , m_calendar(calendar)
    {
        // The keyboard has keys of its own for it.
        setFocusPolicy(Qt::NoFocus);
        setCursor(Qt::ArrowCursor);
        setAccessibleName(u"Calendrier"_s);
        setAccessibleRole(this, QAccessible::ButtonMenu);
    }

    void press() override { click(); }
    std::optional<bool> isOpen() const override { return m_calendar->isVisible(); }

protected:
    void paintEvent(QPaintEvent *) override { }

private:
    const QWidget *m_calendar;
};

} // namespace

DateField::DateField(const QString &name, const QLocale &locale, QWidget *parent)
    : QDateEdit(parent)
    , m_calendar(new CalendarPopup(this, locale))
{
    setLocale(locale);
    setDisplayFormat(dateInFigures(locale));
    setMinimumDate(QDate(100, 1, 1)); // the toolkit knows none before
    setButtonSymbols(NoButtons);
    PickerStyle::dress(this, lineEdit(), name, Symbol::Calendar, symbolSize);

    auto *opener = new CalendarOpener(m_calendar, this);
    opener->setGeometry(PickerStyle::symbolArea(size()));
    connect(opener, &QAbstractButton::clicked, this, &DateField::openCalendar);
    connect(m_calendar, &CalendarPopup::chosen, this, &QDateEdit::setDate);
}

void DateField::openCalendar()
{
    m_calendar->open(date());
}

QSize DateField::sizeHint() const
{
    const QString widest = locale().toString(QDate(2028, 10, 28), displayFormat());
    return {PickerStyle::widthFor({widest}, fieldWidth), fieldHeight()};
}

void DateField::keyPressEvent(QKeyEvent *event)
{
    const bool isAltDown = event->key() == Qt::Key_Down && event->modifiers() & Qt::AltModifier;
    if (isAltDown || event->key() == Qt::Key_F4)
        openCalendar();
    else
        QDateEdit::keyPressEvent(event);
}

void DateField::wheelEvent(QWheelEvent *event)
{
    if (hasFocus())
        QDateEdit::wheelEvent(event);
    else
        event->ignore();
}
