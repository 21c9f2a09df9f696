#pragma once

#include <QList>
#include <QString>

/// One thing that happens to the window. What exactly, goes by what the window shows then: the
/// numbers choose among that.
struct Step {
    enum class Kind {
        Click, ///< anywhere
        Press, ///< on something that can be pressed
        Key,
        Wheel,
        Resize,
        Point, ///< the pointer moves
        Reload,
        Script, ///< how the service answers the next load
        Release, ///< an answer held back comes
        Type, ///< into a form
        Session, ///< another window signs in or out
        Scheme,
        Midnight
    };
    Kind kind = Kind::Key;
    unsigned first = 0;
    unsigned second = 0;
};

QList<Step> randomSteps(unsigned seed, int count);
/// As it is written in a list of steps.
QString textOf(const Step &step);
