#pragma once

#include <QScrollArea>

class ThinScrollBar;

/// The part of a sheet that scrolls when the sheet has no room for it. Its scroll bar lies over the
/// content's right padding, so that coming and going it moves no text.
class SheetBody : public QScrollArea {
    Q_OBJECT

public:
    explicit SheetBody(QWidget *parent = nullptr);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    ThinScrollBar *m_bar;
};
