#pragma once

#include <QScrollArea>

class QKeyEvent;
class SheetEdge;
class ThinScrollBar;

/// The part of a sheet that scrolls when the sheet has no room for it. Its scroll bar lies over the
/// content's right padding, so that coming and going it moves no text. Where content is hidden, an
/// edge with a hairline keeps it clear of what stands above or below.
class SheetBody : public QScrollArea {
    Q_OBJECT

public:
    explicit SheetBody(QWidget *parent = nullptr);

    /// How much of its own height each edge takes when it shows; 0: none there.
    void setEdges(int above, int below);
    /// Gives the content its size: as high as this where it can do with it, else as it likes.
    void layOutContent();
    /// Scrolls to a widget of the content.
    void reveal(const QWidget *widget);
    /// Scrolls if it is a key for that; whether it was.
    bool scroll(const QKeyEvent *event);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void followBar();
    void placeEdges();

    ThinScrollBar *m_bar;
    SheetEdge *m_above;
    SheetEdge *m_below;
};
