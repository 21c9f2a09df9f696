#pragma once

#include <QWidget>

class ErrorView;

/// The text of a failure: red, wrapped, to be selected and copied; scrolls where it has no room.
/// It announces itself to the screen reader when it is shown or its text changes. Of a text beyond
/// any page it shows the beginning; copying everything copies the whole.
class ErrorText : public QWidget {
    Q_OBJECT

public:
    explicit ErrorText(QWidget *parent = nullptr);

    void setText(const QString &text);
    const QString &text() const { return m_text; }

    /// Beyond this many lines it scrolls in place; 0: it takes the room that it is given.
    void setMaximumLines(int lines);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void fit();
    void updateColor();
    void announce();

    QString m_text;
    int m_maximumLines = 0;
    ErrorView *m_view;
};
