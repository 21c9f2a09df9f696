#pragma once

#include <QObject>
#include <optional>

class QDBusVariant;

/// Whether the desktop asks for dark windows, and its changes. On Linux it asks the settings
/// portal, without waiting for it; elsewhere the toolkit's own platform theme follows the desktop,
/// and this knows nothing. Main thread.
class DesktopColorScheme : public QObject {
    Q_OBJECT

public:
    explicit DesktopColorScheme(QObject *parent = nullptr);

    /// None while the desktop has not answered, and where it has no preference.
    std::optional<bool> prefersDark() const { return m_prefersDark; }

Q_SIGNALS:
    /// The desktop has answered, or it is clear that it will not. Emitted once, from the event
    /// loop.
    void settled();
    void changed();

private Q_SLOTS:
    void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void ask();
    void set(std::optional<bool> prefersDark);

    std::optional<bool> m_prefersDark;
};
