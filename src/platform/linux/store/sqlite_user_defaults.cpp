#include "platform/linux/store/sqlite_user_defaults.h"

#include "base/unique_fd.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <unistd.h>

namespace tamsel {

namespace {

constexpr int busyTimeoutMs = 5000;

struct DatabaseCloser {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
};
struct StatementCloser {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, DatabaseCloser>;
using Statement = std::unique_ptr<sqlite3_stmt, StatementCloser>;

/// A SQLite failure with its result code, which decides whether the store is set aside.
struct StoreError {
    int code;
    std::string text;
};

/// The file itself is at fault: no database, a broken one, or one of another shape.
bool isDamage(int code) {
    return code == SQLITE_NOTADB || code == SQLITE_CORRUPT || code == SQLITE_ERROR;
}

/// Held while a store is opened, so that two processes that start at once don't set aside each
/// other's fresh store. The kernel lets go of it with the process, however that ends.
class OpeningLock {
public:
    explicit OpeningLock(const QString& file)
        : m_fd(::open(QFile::encodeName(file).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {}

    bool acquire() const {
        constexpr int stepMs = 10;
        for (int waited = 0; m_fd.isOpen(); waited += stepMs) {
            if (::flock(m_fd.get(), LOCK_EX | LOCK_NB) == 0)
                return true;
            if (waited >= busyTimeoutMs)
                break;
            ::usleep(stepMs * 1000);
        }
        return false;
    }

private:
    UniqueFd m_fd;
};

tl::expected<Database, StoreError> openDatabase(const QByteArray& file) {
    sqlite3* raw = nullptr;
    const int opened = sqlite3_open_v2(file.constData(), &raw,
                                       SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    Database database(raw);
    const auto failed = [&](int code) {
        return tl::unexpected(StoreError{code & 0xff, database ? sqlite3_errmsg(database.get())
                                                               : sqlite3_errstr(code)});
    };
    if (opened != SQLITE_OK)
        return failed(opened);
    sqlite3_busy_timeout(database.get(), busyTimeoutMs);
    const int prepared =
        sqlite3_exec(database.get(),
                     "PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA trusted_schema=OFF;"
                     "CREATE TABLE IF NOT EXISTS defaults(key TEXT PRIMARY KEY, value);"
                     // Reads every page once, so that damage shows here and not at the first save.
                     "SELECT count(value) FROM defaults;",
                     nullptr, nullptr, nullptr);
    if (prepared != SQLITE_OK)
        return failed(prepared);
    return database;
}

/// Moves a damaged store and its companions away; the new name of the main file.
Result<QString> moveAside(const QString& file) {
    QString target;
    for (int n = 1; target.isEmpty() || QFile::exists(target); ++n)
        target = QStringLiteral("%1.damaged-%2").arg(file).arg(n);
    if (!QFile::rename(file, target))
        return fail("the damaged store can't be set aside", file.toStdString());
    for (const auto* companion : {"-wal", "-shm"})
        QFile::rename(file + QLatin1String(companion), target + QLatin1String(companion));
    return target;
}

} // namespace

QString SqliteUserDefaults::standardFile() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/tamsel/defaults.sqlite");
}

Result<std::unique_ptr<SqliteUserDefaults>> SqliteUserDefaults::open(const QString& file) {
    const QString folder = QFileInfo(file).absolutePath();
    if (!QDir().mkpath(folder))
        return fail("the folder can't be made", folder.toStdString());
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    const OpeningLock lock(file + QStringLiteral(".lock"));
    if (!lock.acquire())
        return fail("the store can't be locked for opening", file.toStdString());

    QString setAside;
    auto database = openDatabase(QFile::encodeName(file));
    if (!database && isDamage(database.error().code)) {
        const auto moved = moveAside(file);
        if (!moved)
            return tl::unexpected(moved.error());
        setAside = *moved;
        database = openDatabase(QFile::encodeName(file));
    }
    if (!database)
        return fail(database.error().text, file.toStdString());
    return std::unique_ptr<SqliteUserDefaults>(
        new SqliteUserDefaults(database->release(), setAside));
}

SqliteUserDefaults::SqliteUserDefaults(sqlite3* database, QString setAside)
    : m_database(database), m_setAside(std::move(setAside)) {}

SqliteUserDefaults::~SqliteUserDefaults() {
    sqlite3_close(m_database);
}

Result<std::optional<QByteArray>> SqliteUserDefaults::dataForKey(const QString& key) {
    const QByteArray utf8 = key.toUtf8();
    sqlite3_stmt* raw = nullptr;
    sqlite3_prepare_v2(m_database, "SELECT value FROM defaults WHERE key = ?1", -1, &raw, nullptr);
    const Statement statement(raw);
    sqlite3_bind_text(raw, 1, utf8.constData(), static_cast<int>(utf8.size()), SQLITE_STATIC);
    switch (raw ? sqlite3_step(raw) : SQLITE_ERROR) {
    case SQLITE_ROW:
        break;
    case SQLITE_DONE:
        return std::nullopt;
    default:
        return fail(sqlite3_errmsg(m_database), utf8.toStdString());
    }
    if (sqlite3_column_type(raw, 0) == SQLITE_NULL)
        return std::nullopt;
    const void* data = sqlite3_column_blob(raw, 0);
    return QByteArray(static_cast<const char*>(data), sqlite3_column_bytes(raw, 0));
}

Result<void> SqliteUserDefaults::setData(const QByteArray& value, const QString& key) {
    return put(key, [&value](sqlite3_stmt* statement) {
        sqlite3_bind_blob64(statement, 2, value.constData(),
                            static_cast<sqlite3_uint64>(value.size()), SQLITE_STATIC);
    });
}

Result<void> SqliteUserDefaults::setBool(bool value, const QString& key) {
    return setInteger(value ? 1 : 0, key);
}

Result<void> SqliteUserDefaults::setInteger(std::int64_t value, const QString& key) {
    return put(key, [value](sqlite3_stmt* statement) { sqlite3_bind_int64(statement, 2, value); });
}

Result<void> SqliteUserDefaults::setString(const QString& value, const QString& key) {
    return put(key, [utf8 = value.toUtf8()](sqlite3_stmt* statement) {
        sqlite3_bind_text(statement, 2, utf8.constData(), static_cast<int>(utf8.size()),
                          SQLITE_STATIC);
    });
}

Result<bool> SqliteUserDefaults::contains(const QString& key) {
    return dataForKey(key).map([](const auto& value) { return value.has_value(); });
}

Result<void> SqliteUserDefaults::put(const QString& key,
                                     const std::function<void(sqlite3_stmt*)>& bindValue) {
    const QByteArray utf8 = key.toUtf8();
    sqlite3_stmt* raw = nullptr;
    sqlite3_prepare_v2(m_database, "INSERT OR REPLACE INTO defaults(key, value) VALUES(?1, ?2)", -1,
                       &raw, nullptr);
    const Statement statement(raw);
    if (raw) {
        sqlite3_bind_text(raw, 1, utf8.constData(), static_cast<int>(utf8.size()), SQLITE_STATIC);
        bindValue(raw);
    }
    if (!raw || sqlite3_step(raw) != SQLITE_DONE)
        return fail(sqlite3_errmsg(m_database), utf8.toStdString());
    return {};
}

} // namespace tamsel
