#pragma once

#include "controls/TextBlock.h"
#include "look/Colors.h"

#include <QWidget>

/// Plain text, never markup. It wraps, within words if it must; with a maximum of lines the last
/// ends in an ellipsis, and the tooltip has the whole. Screen readers are always given the whole.
/// For a text with a level (a title) say so with setAccessibleRole(label, QAccessible::Heading).
class TextLabel : public QWidget {
    Q_OBJECT

public:
    explicit TextLabel(QWidget *parent = nullptr);
    TextLabel(const QString &text, const QFont &font, ColorRole color = primaryText,
              QWidget *parent = nullptr);

    void setText(const QString &text);
    const QString &text() const { return m_text; }

    /// 0: as many as it takes.
    void setMaximumLines(int lines);
    void setColor(ColorRole color);
    void setAlignment(Qt::Alignment alignment); ///< horizontal; lines stand at the top

    bool isCut() const { return m_block.isCut(); }
    int naturalWidth() const { return m_block.naturalWidth(); }

    bool hasHeightForWidth() const override;
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void rebuild();
    void layOut();

    QString m_text;
    int m_maximumLines = 0;
    Qt::Alignment m_alignment = Qt::AlignLeft;
    ColorRole m_color = primaryText;
    mutable TextBlock m_block;
};
