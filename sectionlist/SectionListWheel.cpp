#include "sectionlist/SectionListWheel.h"

#include "sectionlist/SectionListMetrics.h"

#include <QApplication>
#include <QWheelEvent>

int SectionListWheel::pixels(const QWheelEvent &event)
{
    // X11 drivers fill in pixels that mean nothing.
    const bool hasPixels =
        event.pixelDelta().y() != 0 && QGuiApplication::platformName() != QLatin1String("xcb");
    double way = -event.pixelDelta().y();
    if (!hasPixels) {
        const double steps = -event.angleDelta().y() / double(QWheelEvent::DefaultDeltasPerStep);
        way = steps * QApplication::wheelScrollLines() * SectionListMetrics::wheelLine;
    }
    if ((way < 0) != (m_rest < 0))
        m_rest = 0; // turning round begins at once
    m_rest += way;
    const int whole = int(m_rest);
    m_rest -= whole;
    return whole;
}
