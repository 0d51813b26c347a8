#pragma once

#include "base/error.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace tamsel {

/// The user's persistent key-value store, shared by all processes of the user. Main thread;
/// each call is one synchronous, atomic read or write: a process killed at any moment leaves the
/// old or the new value.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// The value under `key`; nothing when the key was never written.
    virtual Result<std::optional<QByteArray>> dataForKey(const QString& key) = 0;
    /// Replaces the value under `key`; on failure the old value stays.
    virtual Result<void> setData(const QByteArray& value, const QString& key) = 0;
};

} // namespace tamsel
