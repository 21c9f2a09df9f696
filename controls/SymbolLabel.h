#pragma once

#include "controls/BlockLabel.h"
#include "look/Symbols.h"

/// A symbol and a line of plain text after it, which is cut at its end when there is no room; the
/// tooltip then has the whole, screen readers always. Its size is 12 unless setFont says otherwise.
class SymbolLabel : public BlockLabel {
    Q_OBJECT

public:
    SymbolLabel(Symbol symbol, const QString &text, QWidget *parent = nullptr);

    /// Wraps, between and within words, instead of being cut.
    void setWrapping(bool wrapping);

    bool hasHeightForWidth() const override { return m_wrapping; }
    QSize sizeHint() const override;
    /// Room for the symbol and an ellipsis.
    QSize minimumSizeHint() const override;

protected:
    TextBlock block() const override;
    int indent() const override;
    void paintEvent(QPaintEvent *event) override;

private:
    Symbol m_symbol;
    bool m_wrapping = false;
};
