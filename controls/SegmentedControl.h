#pragma once

#include <QWidget>

class QRadioButton;
class TextLabel;

/// A choice of one value among a few, all in view: a label and, beside it or above it, a track with
/// a segment for each. To keyboard and screen reader it is a group of radio buttons: the chosen
/// segment is the one stop on the tab key's way, and Left and Right move the choice.
class SegmentedControl : public QWidget {
    Q_OBJECT

public:
    /// `label` names the choice on the screen and to the screen reader; the first of `segments` is
    /// chosen.
    SegmentedControl(const QString &label, const QStringList &segments, QWidget *parent = nullptr);

    int count() const { return static_cast<int>(m_segments.size()); }
    int currentIndex() const { return m_current; }
    void setCurrentIndex(int index);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void currentChanged(int index);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    bool isOneRow(int width) const;
    void addSegment(const QString &text, QWidget *track);
    void follow(int index);

    TextLabel *m_label;
    QWidget *m_track;
    QList<QRadioButton *> m_segments;
    int m_current = -1;
};
