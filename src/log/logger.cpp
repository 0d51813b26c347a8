#include "log/logger.h"

#include <QDateTime>
#include <QStringList>

#include <algorithm>

namespace tamsel {

namespace {

QString formatted(std::chrono::system_clock::time_point time, const QTimeZone& zone) {
    const auto sinceEpoch = std::chrono::floor<std::chrono::milliseconds>(time.time_since_epoch());
    return QDateTime::fromMSecsSinceEpoch(sinceEpoch.count(), zone)
        .toString(QStringLiteral("HH:mm:ss"));
}

SystemLogType systemType(LogLevel level) {
    switch (level) {
    case LogLevel::warning:
        return SystemLogType::standard;
    case LogLevel::error:
        return SystemLogType::error;
    case LogLevel::info:
    case LogLevel::success:
        break;
    }
    return SystemLogType::info;
}

QString icon(LogLevel level) {
    switch (level) {
    case LogLevel::warning:
        return QStringLiteral("⚠️");
    case LogLevel::error:
        return QStringLiteral("❌");
    case LogLevel::success:
        return QStringLiteral("✅");
    case LogLevel::info:
        break;
    }
    return QStringLiteral("ℹ️");
}

} // namespace

Logger::Logger(SystemLog& systemLog, MainQueue& queue, const Clock& clock, Pasteboard& pasteboard,
               QObject* parent)
    : QObject(parent),
      m_logger(systemLog),
      m_queue(queue),
      m_clock(clock),
      m_pasteboard(pasteboard),
      m_timeFormatter(clock.timeZone()) {}

void Logger::log(LogLevel level, const QString& message) {
    const SystemLogType type = systemType(level);
    const QString time = timeText(m_clock.now());
    if (m_logger.isEnabled(type)) {
        const QString text = level == LogLevel::success ? QStringLiteral("✅ ") + message : message;
        m_logger.write(type, u'[' + time + QStringLiteral("] ") + text);
    }
    const LogEntry entry{QUuid::createUuid(), m_clock.now(), level, message};
    m_queue.async(this, [this, entry] { append(entry); });
}

QString Logger::timeText(std::chrono::system_clock::time_point time) {
    const std::lock_guard lock(m_fmtLock);
    return formatted(time, m_timeFormatter);
}

void Logger::append(const LogEntry& entry) {
    m_recentLogs.append(entry);
    if (m_recentLogs.size() > maxLogCount)
        m_recentLogs.removeFirst();
    Q_EMIT recentLogsChanged();
}

void Logger::clear() {
    m_recentLogs.clear();
    Q_EMIT recentLogsChanged();
}

QString Logger::formattedText() const {
    const QTimeZone zone = m_clock.timeZone();
    QStringList lines;
    lines.reserve(m_recentLogs.size());
    const auto render = [&](const LogEntry& entry) {
        lines << icon(entry.level) + u' ' + formatted(entry.timestamp, zone) + u' ' + entry.message;
    };
    std::for_each(m_recentLogs.crbegin(), m_recentLogs.crend(), render);
    return lines.join(u'\n');
}

void Logger::copyAll() {
    m_pasteboard.clearContents();
    m_pasteboard.setString(formattedText());
}

} // namespace tamsel
