#pragma once

#include <QDataStream>
#include <QImage>
#include <QStringList>

class ContentView;

/// What a window paints.
struct Pictures {
    QImage window;
    QImage menu; ///< the open account menu; null when there is none
};

/// What a window paints and what it says to a screen reader.
struct Portrait {
    quint64 pixels = 0; ///< a digest of the pictures
    QStringList tree;

    bool operator==(const Portrait &) const = default;
};

/// The list's scroll thumb is left out: its length goes by the heights of the rows seen so far.
Pictures picturesOf(ContentView *window);
/// Of the window that paints these pictures now.
Portrait portraitOf(ContentView *window, const Pictures &pictures);

/// Where they differ, in words; empty when they do not.
QString difference(const Portrait &one, const Portrait &other);
QString difference(const Pictures &one, const Pictures &other);

QDataStream &operator<<(QDataStream &stream, const Pictures &pictures);
QDataStream &operator>>(QDataStream &stream, Pictures &pictures);
QDataStream &operator<<(QDataStream &stream, const Portrait &portrait);
QDataStream &operator>>(QDataStream &stream, Portrait &portrait);
