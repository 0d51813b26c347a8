#pragma once

#include <QString>

namespace tamsel {

/// A line's type in the system's log, from the least urgent up.
enum class SystemLogType { debug, info, standard, error };

/// A handle of the system's log, made for one subsystem and category. Any thread may call; nothing
/// fails towards the caller.
class SystemLog {
public:
    virtual ~SystemLog() = default;

    virtual bool isEnabled(SystemLogType type) const = 0;
    virtual void write(SystemLogType type, const QString& line) = 0;
};

} // namespace tamsel
