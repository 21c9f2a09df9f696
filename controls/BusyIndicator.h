#pragma once

#include <QWidget>

/// A turning ring with its label below, in the middle of the room it has. The screen reader says
/// the label when it appears.
class BusyIndicator : public QWidget {
    Q_OBJECT

public:
    explicit BusyIndicator(const QString &label, QWidget *parent = nullptr);
};
