#pragma once

#include "platform/system_log.h"

#include <QByteArray>

namespace tamsel {

/// Writes to the systemd journal with the fields PRIORITY, SUBSYSTEM and CATEGORY; to standard
/// error, one line each, on a machine without a journal.
class JournalSystemLog final : public SystemLog {
public:
    /// Whether the lines bring their time along, or standard error is to get "[HH:mm:ss] " before
    /// each.
    enum class Times { inLines, added };

    JournalSystemLog(QByteArray subsystem, QByteArray category, Times times = Times::inLines);

    bool isEnabled(SystemLogType type) const override;
    void write(SystemLogType type, const QString& line) override;

private:
    QByteArray m_subsystem;
    QByteArray m_category;
    Times m_times;
    bool m_hasJournal;
};

} // namespace tamsel
