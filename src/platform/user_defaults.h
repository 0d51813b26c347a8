#pragma once

#include "base/error.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
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
    /// The same for a boolean, which is stored as the number 1 or 0.
    virtual Result<void> setBool(bool value, const QString& key) = 0;
    /// The same for a text, which is stored as one.
    virtual Result<void> setString(const QString& value, const QString& key) = 0;
    /// The same for an integer; as its digits in a store that knows no numbers.
    virtual Result<void> setInteger(std::int64_t value, const QString& key) {
        return setData(QByteArray::number(qint64{value}), key);
    }
    /// Whether the key was ever written, whatever its value.
    virtual Result<bool> contains(const QString& key) = 0;

    /// The value under `key` as a boolean: true for a number other than 0, false for anything else;
    /// nothing when the key was never written or can't be read.
    std::optional<bool> boolForKey(const QString& key) {
        const auto data = dataForKey(key);
        if (!data || !*data)
            return std::nullopt;
        return (*data)->toDouble() != 0;
    }
};

} // namespace tamsel
