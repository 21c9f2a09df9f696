#pragma once

#include <QScrollBar>

/// A vertical scroll bar: a thumb of 6 in a gutter of 12, all of which takes the mouse. Hand it to
/// QAbstractScrollArea::setVerticalScrollBar.
class ThinScrollBar : public QScrollBar {
    Q_OBJECT

public:
    explicit ThinScrollBar(QWidget *parent = nullptr);

    static constexpr int gutter = 12;
    static constexpr int thumb = 6;
};
