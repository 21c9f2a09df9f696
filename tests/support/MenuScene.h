#pragma once

#include "controls/Menu.h"
#include "controls/PopupButton.h"
#include "controls/PopupCard.h"
#include "look/Compositing.h"

#include <QAction>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

/// A window in front with a picker in it.
struct MenuScene {
    QWidget window;
    PopupButton *picker = new PopupButton(
        u"Organisé par"_s, {u"La Grange"_s, u"Amis & Cie"_s, u"<b>Causarium</b>"_s}, &window);
    QSignalSpy chosen{picker, &PopupButton::chosen};

    MenuScene()
    {
        picker->setValue(u"Amis & Cie"_s);
        picker->setGeometry(QRect(QPoint(20, 20), picker->sizeHint()));
        window.setGeometry(50, 50, 400, 300);
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            qFatal("the window does not come to the front");
        picker->clearFocus();
        picker->setFocus(Qt::TabFocusReason);
    }

    Menu *menu() const { return picker->menu(); }
    QRect card() const { return menu()->geometry().marginsRemoved(popupMargins(isComposited())); }
};
