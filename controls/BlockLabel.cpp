#include "controls/BlockLabel.h"

#include "controls/TextSelection.h"
#include "look/Accessibility.h"
#include "look/Painting.h"

#include <QEvent>
#include <QPainter>

BlockLabel::BlockLabel(const QFont &font, ColorRole color, QWidget *parent)
    : QWidget(parent)
    , m_color(color)
    , m_block({}, font)
{
    setAccessibleRole(this, QAccessible::StaticText);
}

void BlockLabel::setText(const QString &text)
{
    if (text == m_text)
        return;
    m_text = text;
    setAccessibleName(text);
    rebuild();
}

void BlockLabel::setSelectable()
{
    if (!m_selection)
        m_selection = new TextSelection(this, &m_block, &m_text, indent());
}

int BlockLabel::heightForWidth(int width) const
{
    m_block.layOut(width - indent());
    return m_block.height();
}

void BlockLabel::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        rebuild();
    QWidget::changeEvent(event);
}

void BlockLabel::paintEvent(QPaintEvent *)
{
    m_block.layOut(width() - indent());
    QPainter painter(this);
    m_block.paint(painter, QPointF(indent(), 0), ink(),
                  m_selection ? m_selection->formats() : QList<QTextLayout::FormatRange>());
}

void BlockLabel::resizeEvent(QResizeEvent *)
{
    layOut();
}

void BlockLabel::rebuild()
{
    m_block = block();
    if (testAttribute(Qt::WA_Resized) || isVisible())
        layOut(); // else once it has a size
    updateGeometry();
    update();
}

void BlockLabel::layOut()
{
    m_block.layOut(width() - indent());
    setPlainToolTip(this, m_block.isCut() ? m_text : QString());
}
