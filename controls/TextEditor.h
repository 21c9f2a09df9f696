#pragma once

#include "controls/ShownText.h"

#include <QTextEdit>

#include <map>

/// An entry field of several lines of plain text. Tab leaves it. Of a text beyond any page it shows
/// the beginning, and keeps the rest: see ShownText.
class TextEditor : public QTextEdit {
    Q_OBJECT

public:
    /// `placeholder` is shown while there is no text.
    explicit TextEditor(const QString &placeholder, QWidget *parent = nullptr);

    /// Fills the field; there is nothing to undo afterwards. Does not signal.
    void setWholeText(const QString &text);
    /// All of the text, also what is not shown.
    QString wholeText() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void edited(); ///< wholeText() is another

protected:
    QMimeData *createMimeDataFromSelection() const override;
    bool event(QEvent *event) override;
    void insertFromMimeData(const QMimeData *source) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void setLinePitch();
    void pasteLong(const QString &text);
    QString shownNow() const;
    const ShownText &base() const;
    void forgetLaterBases();
    void noteChange();

    QString m_placeholder;
    /// What the person started from, by the number of steps that can be undone: a paste of more
    /// than is shown is a new start, and undoing it brings back the one before.
    std::map<int, ShownText> m_bases;
    bool m_isFilling = false;
    bool m_isComposing = false;
};
