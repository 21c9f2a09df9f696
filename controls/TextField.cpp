#include "controls/TextField.h"

#include "controls/EndOfComposition.h"
#include "controls/FieldFrame.h"
#include "look/Fonts.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>
#include <QProxyStyle>
#include <QStyleOptionFrame>

namespace {

constexpr int ownMargin = 2; // the toolkit keeps these beside the text by itself

/// Hides a password behind bullets; the toolkit's own are circles as large as capitals.
class FieldStyle final : public QProxyStyle {
public:
    static FieldStyle *shared()
    {
        static QPointer<FieldStyle> style;
        if (!style) {
            style = new FieldStyle;
            style->setParent(qApp);
        }
        return style;
    }

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        constexpr int bullet = 0x2022;
        return hint == SH_LineEdit_PasswordCharacter
            ? bullet
            : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

} // namespace

TextField::TextField(const QString &prompt, QWidget *parent)
    : QLineEdit(parent)
{
    setStyle(FieldStyle::shared());
    setFrame(false);
    setFont(appFont(13));
    setPlaceholderText(prompt);
    setAccessibleName(prompt);
    setTextMargins(fieldPadding - ownMargin, 0, fieldPadding - ownMargin, 0);
    setFixedHeight(fieldHeight());
    addFieldRing(this);
    new EndOfComposition(this);
}

QSize TextField::sizeHint() const
{
    return {QLineEdit::sizeHint().width(), fieldHeight()};
}

QSize TextField::minimumSizeHint() const
{
    return {QLineEdit::minimumSizeHint().width(), fieldHeight()};
}

void TextField::focusInEvent(QFocusEvent *event)
{
    QLineEdit::focusInEvent(event);
    // What the tab key selects is longer than the field, maybe: its beginning shows, not its end.
    if (hasSelectedText() && selectedText() == text())
        setSelection(static_cast<int>(text().size()), -static_cast<int>(text().size()));
}

void TextField::initStyleOption(QStyleOptionFrame *option) const
{
    QLineEdit::initStyleOption(option);
    // The fill has round corners: the toolkit must not lay a square one over it.
    option->palette.setColor(QPalette::Base, Qt::transparent);
}

void TextField::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        event->accept();
    else
        QLineEdit::keyPressEvent(event);
}

void TextField::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    paintFieldFrame(painter, rect(), palette());
    painter.end();
    QLineEdit::paintEvent(event);
}

void TextField::resizeEvent(QResizeEvent *event)
{
    QLineEdit::resizeEvent(event);
    const int room = width() - 2 * fieldPadding;
    // As it was filled: the cursor stands after a text that fits, and before one that does not.
    if (!isModified() && !hasFocus() && fontMetrics().horizontalAdvance(text()) > room)
        home(false);
}
