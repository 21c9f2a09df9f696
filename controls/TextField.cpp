#include "controls/TextField.h"

#include "controls/FieldFrame.h"
#include "controls/Fonts.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionFrame>

namespace {

constexpr int ownMargin = 2; // the toolkit keeps these beside the text by itself

} // namespace

TextField::TextField(const QString &prompt, QWidget *parent)
    : QLineEdit(parent)
{
    setFrame(false);
    setFont(appFont(13));
    setPlaceholderText(prompt);
    setAccessibleName(prompt);
    setTextMargins(fieldPadding - ownMargin, 0, fieldPadding - ownMargin, 0);
    setFixedHeight(fieldHeight());
    addFieldRing(this);
}

QSize TextField::sizeHint() const
{
    return {QLineEdit::sizeHint().width(), fieldHeight()};
}

QSize TextField::minimumSizeHint() const
{
    return {QLineEdit::minimumSizeHint().width(), fieldHeight()};
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
