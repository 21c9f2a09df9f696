#pragma once

#include <QAccessible>
#include <QGuiApplication>
#include <QList>
#include <QTest>

#include <utility>

/// What the program tells screen readers of its own accord, from when this is made. One at a time.
class Announcements {
public:
    using Announcement = std::pair<QAccessible::Event, QObject *>;

    Announcements()
        : m_before(QAccessible::installUpdateHandler(note))
    {
        heard().clear();
    }
    ~Announcements() { QAccessible::installUpdateHandler(m_before); }
    Q_DISABLE_COPY_MOVE(Announcements)

    /// Whether the program tells anything: it begins some time after the program, and never on the
    /// platform without a display.
    static bool areMade()
    {
        return QGuiApplication::platformName() != QLatin1String("offscreen")
            && QTest::qWaitFor([] { return QAccessible::isActive(); });
    }

    static bool contains(QAccessible::Event event, QObject *source)
    {
        return heard().contains(Announcement{event, source});
    }
    static void forget() { heard().clear(); }

private:
    static void note(QAccessibleEvent *event) { heard().append({event->type(), event->object()}); }
    static QList<Announcement> &heard()
    {
        static QList<Announcement> all;
        return all;
    }

    QAccessible::UpdateHandler m_before;
};

/// What a screen reader knows of a widget.
inline QAccessibleInterface *read(QWidget *widget)
{
    return QAccessible::queryAccessibleInterface(widget);
}
