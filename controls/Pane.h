#pragma once

#include <QWidget>

class PaneEdge;

/// A surface with round corners and an edge of one pixel, both of which lie over what is in it: a
/// distance within the content counts from the pane's outer edge. Give it one layout or content.
class Pane : public QWidget {
    Q_OBJECT

public:
    explicit Pane(QWidget *parent = nullptr);

    void setContent(QWidget *content);

    static constexpr int radius = 8;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    PaneEdge *m_edge;
};
