#pragma once

#include <QLineEdit>

/// A one-line entry field, which opens with the beginning of its text in sight. Return does nothing
/// in it: no form is sent by a key that people press to go on. Escape gives up the characters that
/// are being composed, where there are any, before it means anything to a form. Its accessible name
/// is its prompt until it is given another.
class TextField : public QLineEdit {
    Q_OBJECT

public:
    /// `prompt` is shown while the field is empty.
    explicit TextField(const QString &prompt, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void focusInEvent(QFocusEvent *event) override;
    void initStyleOption(QStyleOptionFrame *option) const override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
};
