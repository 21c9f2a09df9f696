#pragma once

#include "controls/TextBlock.h"
#include "look/Colors.h"

#include <QWidget>

class TextSelection;

/// What labels of plain text have in common: a block of lines, laid out for the width that there
/// is. Where it is cut the tooltip has the whole; screen readers are always given the whole.
class BlockLabel : public QWidget {
    Q_OBJECT

public:
    void setText(const QString &text);
    const QString &text() const { return m_text; }
    /// Lets the text be selected and copied, for good.
    void setSelectable();

    bool isCut() const { return m_block.isCut(); }
    /// The width that shows the whole.
    int naturalWidth() const { return indent() + m_block.naturalWidth(); }
    int heightForWidth(int width) const override;

protected:
    /// The font is for who derives to set, which asks for the block.
    BlockLabel(const QFont &font, ColorRole color, QWidget *parent);

    /// The text in the lines that it takes, not laid out yet.
    virtual TextBlock block() const = 0;
    /// The room before the text.
    virtual int indent() const { return 0; }
    QColor ink() const { return m_color(palette()); }
    /// To be called when what the functions above give has changed, and once at first.
    void rebuild();

    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void layOut();

    QString m_text;
    ColorRole m_color;
    mutable TextBlock m_block;
    TextSelection *m_selection = nullptr;
};
