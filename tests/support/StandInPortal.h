#pragma once

#include <QObject>
#include <QProcess>

class PrivateBus;

/// A desktop's settings portal as far as colours go: a program of its own, as on a desktop, so that
/// nothing it tells the toolkit's bus library about itself is known in the test's process.
class StandInPortal : public QObject {
    Q_OBJECT

public:
    /// `scheme`: 0 no preference, 1 dark, 2 light. `contrast`: 1 for more of it. Serves when the
    /// constructor is through.
    explicit StandInPortal(const PrivateBus &bus, uint scheme, uint contrast = 0);
    /// Ends it.
    ~StandInPortal() override;
    Q_DISABLE_COPY_MOVE(StandInPortal)

    /// The desktop's user switches: tells all listeners.
    void change(uint scheme);
    void changeContrast(uint contrast);
    /// Tells all listeners of a change of any setting.
    void tell(const QString &group, const QString &key, uint value);
    /// From now on questions wait until answer() is called.
    void holdAnswers();
    void answer();
    /// What was asked for so far, in order.
    const QStringList &questions() const { return m_questions; }

private:
    void command(const QString &line);
    void read();

    QProcess m_program;
    QStringList m_questions;
};
