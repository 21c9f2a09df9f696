#pragma once

#include "controls/PopupLabel.h"

#include <QStringList>

/// A picker of one text among several, in a menu.
class PopupButton : public PopupLabel {
    Q_OBJECT

public:
    PopupButton(const QString &name, const QStringList &choices, QWidget *parent = nullptr);

    /// Shows `value`, and marks it in the menu where it is offered. Does not signal.
    void setValue(const QString &value);

    QSize sizeHint() const override;

Q_SIGNALS:
    void chosen(const QString &value);

private:
    QStringList m_choices;
};
