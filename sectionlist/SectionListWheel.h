#pragma once

class QWheelEvent;

/// Turns wheel and touch pad into pixels. Fractions of a pixel and of a wheel's step add up.
class SectionListWheel {
public:
    /// How far to scroll, in pixels: downwards when positive.
    int pixels(const QWheelEvent &event);

private:
    double m_rest = 0;
};
