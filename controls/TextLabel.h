#pragma once

#include "controls/BlockLabel.h"

/// Plain text, never markup. It wraps, within words if it must; with a maximum of lines the last
/// ends in an ellipsis, and the tooltip has the whole.
/// For a text with a level (a title) say so with setAccessibleRole(label, QAccessible::Heading).
class TextLabel : public BlockLabel {
    Q_OBJECT

public:
    explicit TextLabel(QWidget *parent = nullptr);
    TextLabel(const QString &text, const QFont &font, ColorRole color = primaryText,
              QWidget *parent = nullptr);

    /// 0: as many as it takes.
    void setMaximumLines(int lines);
    void setAlignment(Qt::Alignment alignment); ///< horizontal; lines stand at the top

    bool hasHeightForWidth() const override { return true; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    TextBlock block() const override;

private:
    int m_maximumLines = 0;
    Qt::Alignment m_alignment = Qt::AlignLeft;
};
