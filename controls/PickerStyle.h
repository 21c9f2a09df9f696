#pragma once

#include "look/Symbols.h"

#include <QCommonStyle>

class QAbstractSpinBox;
class QLineEdit;

/// Draws a spin box as an entry field with a symbol at its right end. Where the spin box has
/// buttons, the upper and the lower half of the symbol are they.
class PickerStyle : public QCommonStyle {
    Q_OBJECT

public:
    PickerStyle(Symbol symbol, int symbolSize);

    /// Makes a picker of a spin box, whose line edit is `edit`: named, in the size that it asks
    /// for, drawn by a style of its own, with the ring and the keys of the other fields.
    static void dress(QAbstractSpinBox *field, QLineEdit *edit, const QString &name, Symbol symbol,
                      int symbolSize);

    /// How wide a picker is: as drawn, or as much wider as one of these texts needs.
    static int widthFor(const QStringList &texts, int drawn);

    /// Where the symbol takes the mouse, within a field of this size.
    static QRect symbolArea(const QSize &field);

    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                         const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                            QPainter *painter, const QWidget *widget) const override;

private:
    Symbol m_symbol;
    int m_symbolSize;
};
