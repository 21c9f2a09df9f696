#pragma once

#include "app/ButtonStyles.h"
#include "controls/Sheet.h"
#include "controls/TextLabel.h"
#include "controls/ThinScrollBar.h"
#include "look/Fonts.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QScrollArea>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

inline const QString sentence = u"Une trentaine d’artisans, vin chaud et crêpes. "_s;

/// A window that has a field and a button, and over it a sheet of three parts.
struct SheetScene {
    QWidget window;
    QLineEdit *field = new QLineEdit(&window);
    SecondaryButton *below = new SecondaryButton(u"Dessous"_s, &window);
    Sheet *sheet = new Sheet(480, &window);
    TextLabel *text = new TextLabel({}, appFont(13));
    QLineEdit *entry = new QLineEdit;
    SecondaryButton *button = new SecondaryButton(u"Fermer"_s);

    explicit SheetScene(const QString &body = sentence)
    {
        auto *header = new QWidget;
        auto *headerColumn = new QVBoxLayout(header);
        headerColumn->setContentsMargins(16, 16, 16, 0);
        headerColumn->addWidget(new TextLabel(u"Titre"_s, appFont(22)));
        sheet->setHeader(header);

        auto *content = new QWidget;
        auto *contentColumn = new QVBoxLayout(content);
        contentColumn->setContentsMargins(16, 16, 16, 16);
        contentColumn->setSpacing(0);
        contentColumn->addWidget(text);
        contentColumn->addWidget(entry);
        contentColumn->addStretch();
        entry->setFixedHeight(28);
        text->setText(body);
        sheet->setBody(content);

        auto *footer = new QWidget;
        auto *row = new QHBoxLayout(footer);
        row->setContentsMargins(16, 10, 16, 10);
        row->addStretch();
        row->addWidget(button);
        sheet->setFooter(footer);
        sheet->setInitialFocus(button);
        sheet->setWayOut(button);

        below->move(0, 300);
        window.setGeometry(20, 40, 640, 400);
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            qFatal("the window does not come to the front");
    }

    QScrollArea *scroll() const { return sheet->findChild<QScrollArea *>(); }
    QScrollBar *bar() const { return scroll()->verticalScrollBar(); }
};
