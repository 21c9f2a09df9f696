#pragma once

#include <QObject>
#include <memory>
#include <optional>

class QDBusVariant;
class Worker;

/// What the desktop asks of all windows' colours, and its changes. On Linux it asks the settings
/// portal, without waiting for it, nor for the bus; elsewhere the toolkit's own platform theme
/// follows the desktop, and this knows nothing. Main thread.
class DesktopAppearance : public QObject {
    Q_OBJECT

public:
    explicit DesktopAppearance(QObject *parent = nullptr);
    /// Waits for a bus that is being connected to.
    ~DesktopAppearance() override;

    /// Whether it is known what the desktop wants, or that it will not say. True from the start
    /// where there is nobody to ask.
    bool isSettled() const { return m_isSettled; }
    /// Whether windows are to be dark. None while the desktop has not answered, and where it has no
    /// preference.
    std::optional<bool> prefersDark() const { return m_state.prefersDark; }
    /// Whether what is faint is to stand out more; false while the desktop has not answered.
    bool wantsContrast() const { return m_state.wantsContrast; }

Q_SIGNALS:
    /// The desktop has answered, or it is clear that it will not. Emitted once, from the event
    /// loop, unless it was settled from the start.
    void settled();
    void changed();

private Q_SLOTS:
    void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    struct State {
        std::optional<bool> prefersDark;
        bool wantsContrast = false;
        bool operator==(const State &) const = default;
    };

    void connected();
    void listen();
    void ask(const QString &key);
    void set(const QString &key, uint value);
    void settle();

    State m_state;
    bool m_isSettled = false;
    int m_questions = 0; ///< not answered yet
    std::unique_ptr<Worker> m_connecting;
};
