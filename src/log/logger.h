#pragma once

#include "platform/clock.h"
#include "platform/main_queue.h"
#include "platform/pasteboard.h"
#include "platform/system_log.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QUuid>

#include <chrono>
#include <mutex>

namespace tamsel {

enum class LogLevel { info, warning, error, success };

/// One recorded line. `timestamp` is the wall-clock time of the log call.
struct LogEntry {
    QUuid id;
    std::chrono::system_clock::time_point timestamp;
    LogLevel level;
    QString message;
};

/// The application's log: every call writes a line to the system's log and records an entry in a
/// bounded list of recent ones. log() and its shorthands may be called from any thread and never
/// fail; everything else is for the main thread.
class Logger final : public QObject {
    Q_OBJECT

public:
    static constexpr qsizetype maxLogCount = 200;

    Logger(SystemLog& systemLog, MainQueue& queue, const Clock& clock, Pasteboard& pasteboard,
           QObject* parent = nullptr);

    void log(LogLevel level, const QString& message);
    void info(const QString& message) { log(LogLevel::info, message); }
    void warning(const QString& message) { log(LogLevel::warning, message); }
    void error(const QString& message) { log(LogLevel::error, message); }
    void success(const QString& message) { log(LogLevel::success, message); }

    /// Oldest first, at most maxLogCount.
    const QList<LogEntry>& recentLogs() const { return m_recentLogs; }
    void clear();
    /// The recent entries as text, newest first, one line each.
    QString formattedText() const;
    /// Replaces the clipboard's contents by formattedText().
    void copyAll();

signals:
    void recentLogsChanged();

private:
    void append(const LogEntry& entry);
    QString timeText(std::chrono::system_clock::time_point time);

    SystemLog& m_logger;
    MainQueue& m_queue;
    const Clock& m_clock;
    Pasteboard& m_pasteboard;
    QList<LogEntry> m_recentLogs;
    /// Fixed when the logger is made; guarded by the mutex, as its lookups may build caches.
    QTimeZone m_timeFormatter;
    std::mutex m_fmtLock;
};

} // namespace tamsel
