#pragma once

#include "controls/TextBlock.h"
#include "look/Colors.h"
#include "look/Symbols.h"

#include <QWidget>

/// A symbol and a line of plain text after it, which is cut at its end when there is no room; the
/// tooltip then has the whole, screen readers always. Its size is 12 unless setFont says otherwise.
class SymbolLabel : public QWidget {
    Q_OBJECT

public:
    SymbolLabel(Symbol symbol, const QString &text, QWidget *parent = nullptr);

    void setText(const QString &text);
    const QString &text() const { return m_text; }
    void setColor(ColorRole color); ///< secondary unless set
    /// Wraps, between and within words, instead of being cut.
    void setWrapping(bool wrapping);

    bool isCut() const { return m_block.isCut(); }
    /// The width that shows the whole.
    int naturalWidth() const;

    bool hasHeightForWidth() const override { return m_wrapping; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    /// Room for the symbol and an ellipsis.
    QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void rebuild();
    void layOut();

    Symbol m_symbol;
    QString m_text;
    ColorRole m_color = secondaryText;
    bool m_wrapping = false;
    mutable TextBlock m_block;
};
