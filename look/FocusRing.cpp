#include "look/FocusRing.h"

#include "look/Colors.h"
#include "look/Painting.h"

#include <QEvent>
#include <QPainter>

#include <utility>

FocusRing::FocusRing(QWidget *target, qreal radius, int gap, KeyboardFocus::Shown shown)
    : QWidget(target)
    , m_target(target)
    , m_focus(new KeyboardFocus(target, shown))
    , m_radius(radius)
    , m_gap(gap)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();

    connect(m_focus, &KeyboardFocus::changed, this, &FocusRing::follow);
    connect(target, &QObject::destroyed, this, [this] { delete this; });
}

bool FocusRing::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::ParentChange:
    case QEvent::ZOrderChange:
        if (watched != this)
            follow();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void FocusRing::follow()
{
    for (const auto &widget : std::exchange(m_watched, {})) {
        if (widget)
            widget->removeEventFilter(this);
    }
    if (!m_target || !m_focus || !m_focus->isVisible() || !m_target->isVisible()
        || m_target->isWindow()) {
        hide();
        return;
    }
    const int room = m_gap + ringWidth;
    QWidget *host = m_target;
    QRect place;
    do {
        host->installEventFilter(this);
        m_watched.append(host);
        host = host->parentWidget();
        place = QRect(m_target->mapTo(host, QPoint()), m_target->size())
                    .adjusted(-room, -room, room, room);
    } while (!host->rect().contains(place) && !host->isWindow());
    if (parentWidget() != host)
        setParent(host);
    setGeometry(place);
    show();
    raise();
}

void FocusRing::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintRing(painter, rect(), m_radius + m_gap + ringWidth, accentInk(palette()));
}
