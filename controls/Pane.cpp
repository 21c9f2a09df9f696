#include "controls/Pane.h"

#include "look/Colors.h"
#include "look/Painting.h"

#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

/// The pane's edge and what lies outside its corners, over the content. Only that much of it is
/// there (a mask), so that the content scrolls without it.
class PaneEdge : public QWidget {
public:
    explicit PaneEdge(QWidget *pane)
        : QWidget(pane)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainterPath outside;
        outside.addRect(rect());
        outside.addRoundedRect(rect(), Pane::radius, Pane::radius);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(outside, windowColor(palette()));
        strokeRounded(painter, rect(), Pane::radius, paneEdge(palette()));
    }

    void resizeEvent(QResizeEvent *) override
    {
        constexpr int r = Pane::radius;
        QRegion middle(rect().adjusted(1, 1, -1, -1));
        for (const QPoint corner : {QPoint(0, 0), QPoint(width() - r, 0), QPoint(0, height() - r),
                                    QPoint(width() - r, height() - r)})
            middle -= QRect(corner, QSize(r, r));
        setMask(QRegion(rect()) - middle);
    }
};

Pane::Pane(QWidget *parent)
    : QWidget(parent)
    , m_edge(new PaneEdge(this))
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
}

void Pane::setContent(QWidget *content)
{
    layout()->addWidget(content);
    m_edge->raise();
}

void Pane::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    fillRounded(painter, rect(), radius, surfaceColor(palette()));
}

void Pane::resizeEvent(QResizeEvent *)
{
    m_edge->setGeometry(rect());
    m_edge->raise();
}
