#include "platform/linux/store/journal_system_log.h"

#define SD_JOURNAL_SUPPRESS_LOCATION
#include <systemd/sd-journal.h>

#include <QTime>

#include <syslog.h>
#include <unistd.h>

namespace tamsel {

namespace {

int priority(SystemLogType type) {
    switch (type) {
    case SystemLogType::error:
        return LOG_ERR;
    case SystemLogType::standard:
        return LOG_NOTICE;
    case SystemLogType::info:
        return LOG_INFO;
    case SystemLogType::debug:
        break;
    }
    return LOG_DEBUG;
}

/// One line stays one line, and nothing in it can drive a terminal.
QByteArray singleLine(const QString& line) {
    QByteArray utf8 = line.toUtf8();
    for (char& c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7f)
            c = ' ';
    }
    utf8 += '\n';
    return utf8;
}

} // namespace

JournalSystemLog::JournalSystemLog(QByteArray subsystem, QByteArray category, Times times)
    : m_subsystem(std::move(subsystem)),
      m_category(std::move(category)),
      m_times(times),
      // Sending without a journal succeeds silently, so its socket is looked for first.
      m_hasJournal(::access("/run/systemd/journal/socket", W_OK) == 0) {}

bool JournalSystemLog::isEnabled(SystemLogType) const {
    return true;
}

void JournalSystemLog::write(SystemLogType type, const QString& line) {
    if (m_hasJournal) {
        sd_journal_send("MESSAGE=%s", line.toUtf8().constData(), "PRIORITY=%d", priority(type),
                        "SUBSYSTEM=%s", m_subsystem.constData(), "CATEGORY=%s",
                        m_category.constData(), "SYSLOG_IDENTIFIER=tamsel", nullptr);
        return;
    }
    const QString time = m_times == Times::added
                             ? QTime::currentTime().toString(QStringLiteral("[HH:mm:ss] "))
                             : QString();
    const QByteArray text = singleLine(time + line);
    // A single write keeps lines of several threads whole; a closed standard error loses them.
    [[maybe_unused]] const auto written =
        ::write(STDERR_FILENO, text.constData(), static_cast<std::size_t>(text.size()));
}

} // namespace tamsel
