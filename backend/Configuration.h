#pragma once

#include <QHash>
#include <QProcessEnvironment>
#include <QString>

/// The text values of the bundle's information dictionary; values of other kinds are not in it.
using BundleDictionary = QHash<QString, QString>;

/// The service's base address and public key.
struct Configuration {
    /// Normalised by `normalizeURL`; empty when it is configured nowhere.
    QString supabaseURL;
    /// Without white space at both ends; empty when it is configured nowhere.
    QString supabaseKey;

    /// Reads SUPABASE_URL and SUPABASE_KEY: the bundle's entry as it stands, even when it is empty,
    /// else the environment's variable, else nothing.
    static Configuration from(const BundleDictionary &bundle,
                              const QProcessEnvironment &environment);

    /// Whether requests can be sent at all.
    bool isComplete() const { return !supabaseURL.isEmpty() && !supabaseKey.isEmpty(); }

    bool operator==(const Configuration &) const = default;
};

/// `text` without white space at both ends and, unless it begins with "http://" or "https://"
/// (written exactly so), with "https://" in front. Nothing else is checked or repaired.
QString normalizeURL(QStringView text);
