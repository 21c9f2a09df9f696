#pragma once

#include <QVariantAnimation>
#include <QWidget>

/// A ring of 24 with an arc that goes round while it is seen; it stands still where the desktop
/// asks for no animation.
class Spinner : public QWidget {
    Q_OBJECT

public:
    explicit Spinner(QWidget *parent = nullptr);

    bool isTurning() const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    QVariantAnimation m_turn;
};
