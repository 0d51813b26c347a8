#pragma once

#include "platform/user_defaults.h"

#include <functional>
#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace tamsel {

/// The user defaults in one SQLite file: table `defaults(key TEXT PRIMARY KEY, value)`, write-ahead
/// log, synchronous FULL, so that a kill at any moment leaves the old or the new value.
class SqliteUserDefaults final : public UserDefaults {
public:
    /// Opens `file`, making it and its folder when missing. A file that is no readable store is
    /// set aside under another name, never deleted, and a new store takes its place.
    static Result<std::unique_ptr<SqliteUserDefaults>> open(const QString& file);
    /// $XDG_CONFIG_HOME/tamsel/defaults.sqlite.
    static QString standardFile();

    ~SqliteUserDefaults() override;

    /// Where a damaged store was put when this one was opened; empty when there was none.
    const QString& setAside() const { return m_setAside; }

    Result<std::optional<QByteArray>> dataForKey(const QString& key) override;
    Result<void> setData(const QByteArray& value, const QString& key) override;
    Result<void> setBool(bool value, const QString& key) override;
    Result<void> setString(const QString& value, const QString& key) override;
    Result<void> setInteger(std::int64_t value, const QString& key) override;
    Result<bool> contains(const QString& key) override;

private:
    Result<void> put(const QString& key, const std::function<void(sqlite3_stmt*)>& bindValue);
    SqliteUserDefaults(sqlite3* database, QString setAside);

    sqlite3* m_database;
    QString m_setAside;
};

} // namespace tamsel
