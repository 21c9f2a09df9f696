#pragma once

#include <QString>

/// One thing that was looked at, in words for the person who runs the project.
struct Finding {
    enum class Weight {
        Good, ///< as it should be
        Notice, ///< works; something to know about it
        Fault, ///< members are hindered, or somebody may do too much
    };

    Weight weight = Weight::Good;
    QString text;
};
