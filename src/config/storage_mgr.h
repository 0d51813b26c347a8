#pragma once

#include "records/records.h"

#include <QString>

namespace tamsel {

class Logger;
class UserDefaults;

/// Keeps the user's one configuration under one key of the user defaults, as a binary property
/// list, and is the only writer of that key. Caches nothing: every load reads the store. Main
/// thread only. Failures are logged, never returned.
class StorageMgr final {
public:
    static inline const QString configKey = QStringLiteral("tamsel_config");

    StorageMgr(UserDefaults& defaults, Logger& logger) : m_defaults(defaults), m_logger(logger) {}

    /// The stored configuration; a fresh one when there is none, or when the stored value can't be
    /// read (it then stays in place until the next save).
    Cfg load() const;
    /// Replaces the stored configuration; when that fails the previous one stays.
    void save(const Cfg& cfg);

private:
    UserDefaults& m_defaults;
    Logger& m_logger;
};

} // namespace tamsel
