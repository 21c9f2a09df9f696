#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <utility>

/// What the user's account remembers for this program, as bytes under keys.
///
/// On macOS that is the program's preferences, elsewhere the folder "aMorvelle" in the user's
/// configuration folder with one file a key. Folder and files are for the user's eyes only from
/// their first byte on. Nothing is reported: what cannot be read is absent, what cannot be written
/// stays as it was. Values are read afresh each time. For the main thread.
class UserDefaults {
public:
    /// The user's own.
    static UserDefaults &standard();

    /// Values kept as files in `folder`, which is made when it is needed.
    explicit UserDefaults(QString folder)
        : m_folder(std::move(folder))
    {
    }

    /// The value under `key`; none when there is none, or what stands there is no plain file.
    std::optional<QByteArray> data(const QString &key) const;
    /// Replaces the value under `key` as a whole. One of more than a megabyte, which `data` would
    /// not read back, is refused.
    void set(const QString &key, const QByteArray &value);
    /// Removes the value, and what a program that was killed had written of one.
    void remove(const QString &key);

private:
    UserDefaults() = default;

    QByteArray pathOf(const QString &key) const;

    // Empty for the program's preferences, which macOS keeps itself.
    QString m_folder;
};
