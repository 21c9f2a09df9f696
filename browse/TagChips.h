#pragma once

#include <QStringList>
#include <QWidget>

/// An event's tags as coloured chips on one line: those that fit whole, then an ellipsis; a chip
/// that does not even fit alone is cut within. The tooltip then has all of them.
class TagChips : public QWidget {
    Q_OBJECT

public:
    explicit TagChips(QWidget *parent = nullptr);

    void setTags(const QStringList &tags);

    /// All tags, for screen readers: "Repas, Spectacle".
    const QString &spoken() const { return m_spoken; }

    QSize sizeHint() const override;
    /// No width of its own: tags, however many, never widen what they lie in.
    QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Chip {
        QString text; ///< what is painted: the tag or its beginning
        QColor color;
        int x = 0;
        int width = 0;
    };
    void arrange();

    QStringList m_tags;
    QString m_spoken;
    QList<Chip> m_chips;
    int m_ellipsisX = -1; ///< where the ellipsis stands; -1: all tags are shown
};
