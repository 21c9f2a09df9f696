#pragma once

#include "controls/Menu.h"
#include "controls/PopupLabel.h"

#include <QAction>
#include <QTest>

#include <algorithm>

/// Brings the pointer to the label, opens its menu by click and clicks the item of that text.
/// The pointer travels, as a hand moves it: newer toolkits take a click at the place where the
/// pointer was when the menu opened for the end of the click that opened it.
inline void chooseByClick(PopupLabel *label, const QString &item)
{
    QTest::mouseMove(label);
    QTest::mouseClick(label, Qt::LeftButton);
    const auto items = label->menu()->actions();
    const auto found = std::ranges::find(items, item, &QAction::text);
    if (found == items.end())
        qFatal("no such item");
    const QPoint at = label->menu()->actionGeometry(*found).center();
    QTest::mouseMove(label->menu(), at);
    QTest::mouseClick(label->menu(), Qt::LeftButton, {}, at);
}
