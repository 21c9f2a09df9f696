#pragma once

#include <QObject>

class QWidget;

/// Lets the keyboard's cancel give up what is being composed in a field (an accent, a syllable that
/// is not yet chosen) before it means anything to the sheet around it.
class EndOfComposition : public QObject {
    Q_OBJECT

public:
    /// Watches `field`, and lives as long as it.
    explicit EndOfComposition(QWidget *field);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_field;
    bool m_isComposing = false;
};
