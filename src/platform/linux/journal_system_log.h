#pragma once

#include "platform/system_log.h"

#include <QByteArray>

namespace tamsel {

/// Writes to the systemd journal with the fields PRIORITY, SUBSYSTEM and CATEGORY; to standard
/// error, one line each, on a machine without a journal.
class JournalSystemLog final : public SystemLog {
public:
    JournalSystemLog(QByteArray subsystem, QByteArray category);

    bool isEnabled(SystemLogType type) const override;
    void write(SystemLogType type, const QString& line) override;

private:
    QByteArray m_subsystem;
    QByteArray m_category;
    bool m_hasJournal;
};

} // namespace tamsel
