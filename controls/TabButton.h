#pragma once

#include "look/Accessibility.h"

#include <QAbstractButton>

class KeyboardFocus;

/// One tab of a TabStrip.
class TabButton : public QAbstractButton, public Pressable {
    Q_OBJECT

public:
    explicit TabButton(const QString &title, QWidget *parent = nullptr);

    void press() override { click(); }
    bool isChosen() const override { return isChecked(); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_title;
    KeyboardFocus *m_focus;
};
