#include "controls/PickerStyle.h"

#include "controls/EndOfComposition.h"
#include "controls/FieldFrame.h"
#include "look/Colors.h"
#include "look/Fonts.h"

#include <QAbstractSpinBox>
#include <QFontMetricsF>
#include <QLineEdit>
#include <QPainter>
#include <QStyleOption>

#include <algorithm>

namespace {

constexpr int symbolRoom = 14;
constexpr int symbolGap = 4; ///< between the text and the symbol
constexpr int ownMargin = 2; // the toolkit keeps these beside the text by itself

} // namespace

PickerStyle::PickerStyle(Symbol symbol, int symbolSize)
    : m_symbol(symbol)
    , m_symbolSize(symbolSize)
{
}

void PickerStyle::dress(QAbstractSpinBox *field, QLineEdit *edit, const QString &name,
                        Symbol symbol, int symbolSize)
{
    field->setFocusPolicy(Qt::StrongFocus);
    field->setFont(appFont(13));
    field->setAccessibleName(name);
    field->setFixedSize(field->sizeHint());
    addFieldRing(field);
    new EndOfComposition(edit);

    auto *ownStyle = new PickerStyle(symbol, symbolSize);
    ownStyle->setParent(field);
    field->setStyle(ownStyle);
    QPalette clear;
    clear.setColor(QPalette::Base, Qt::transparent); // the field's fill has round corners
    edit->setPalette(clear);
}

int PickerStyle::widthFor(const QStringList &texts, int drawn)
{
    constexpr int cursor = 2;
    const QFontMetricsF metrics(appFont(13));
    int text = 0;
    for (const QString &candidate : texts)
        text = std::max(text, qCeil(metrics.horizontalAdvance(candidate)));
    return std::max(scaled(drawn), fieldPadding + text + cursor + symbolArea({}).width());
}

QRect PickerStyle::symbolArea(const QSize &field)
{
    const int width = symbolGap + scaled(symbolRoom) + fieldPadding;
    return {field.width() - width, 0, width, field.height()};
}

QRect PickerStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option,
                                  SubControl part, const QWidget *widget) const
{
    if (control != CC_SpinBox)
        return QCommonStyle::subControlRect(control, option, part, widget);
    const QRect &field = option->rect;
    const QRect symbol = symbolArea(field.size());
    const int half = field.height() / 2;
    switch (part) {
    case SC_SpinBoxFrame:
        return field;
    case SC_SpinBoxEditField:
        return {fieldPadding - ownMargin, 0, symbol.left() - fieldPadding + 2 * ownMargin,
                field.height()};
    case SC_SpinBoxUp:
        return symbol.adjusted(0, 0, 0, half - symbol.height());
    case SC_SpinBoxDown:
        return symbol.adjusted(0, half, 0, 0);
    default:
        return {};
    }
}

void PickerStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                     QPainter *painter, const QWidget *widget) const
{
    if (control != CC_SpinBox) {
        QCommonStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    const QRect &field = option->rect;
    paintFieldFrame(*painter, field, option->palette);
    const int room = scaled(symbolRoom);
    paintSymbol(*painter, m_symbol,
                QRectF(field.width() - fieldPadding - room, 0, room, field.height()),
                scaled(m_symbolSize), secondaryText(option->palette));
}
