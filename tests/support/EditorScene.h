#pragma once

#include "controls/TextEditor.h"
#include "look/Colors.h"
#include "support/Picture.h"
#include "support/Typing.h"

#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

/// An editor among other fields, in a window in front.
struct EditorScene {
    QWidget window;
    QWidget *before = new QWidget(&window);
    TextEditor *editor = new TextEditor(u"Ex: Pour les enfants"_s, &window);
    QWidget *after = new QWidget(&window);

    explicit EditorScene(const QString &text = {})
    {
        auto *column = new QVBoxLayout(&window);
        for (QWidget *field : {before, static_cast<QWidget *>(editor), after}) {
            field->setFocusPolicy(Qt::StrongFocus);
            column->addWidget(field);
        }
        editor->setWholeText(text);
        window.resize(460, 300);
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            qFatal("the window does not come to the front");
    }

    void focus() const
    {
        editor->setFocus(Qt::TabFocusReason);
        editor->moveCursor(QTextCursor::End);
    }
};

inline QColor colorAt(EditorScene &scene, QPoint inEditor)
{
    return picture(scene.window).pixelColor(scene.editor->mapTo(&scene.window, inEditor));
}

inline bool hasInk(EditorScene &scene, const QRect &inEditor)
{
    const QRect area(scene.editor->mapTo(&scene.window, inEditor.topLeft()), inEditor.size());
    const QImage image = picture(scene.window);
    const QColor fill = surfaceColor(scene.editor->palette());
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (!alike(image.pixelColor(x, y), fill))
                return true;
        }
    }
    return false;
}
