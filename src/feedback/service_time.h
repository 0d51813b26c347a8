#pragma once

#include <QCalendar>
#include <QDateTime>
#include <QLocale>
#include <QString>

#include <optional>

namespace tamsel {

class Clock;

/// How the user writes dates.
struct TimeStyle {
    QLocale locale = QLocale::c();
    QCalendar calendar = QCalendar();

    /// The style of a locale, with the calendar that is usual where it is spoken.
    static TimeStyle of(const QLocale& locale);
};

/// Reads one of the service's times, of one of these six forms:
///   2026-11-23T09:41:07.123Z               2026-11-23T09:41:07+08:00
///   2026-11-23 09:41:07.123456 +0800 CST   2026-11-23 09:41:07.123456 +0800
///   2026-11-23 09:41:07 +0800 CST          2026-11-23 09:41:07 +0800
/// The offset decides; the name after it only repeats it, and not even uniquely.
std::optional<QDateTime> parseServiceTime(const QString& text);

/// "Today 09:41", "Yesterday 09:41" or "11-21 09:41" in the clock's zone; the text itself when it
/// is in none of the forms.
QString displayedTime(const QString& text, const Clock& clock, const TimeStyle& style);

} // namespace tamsel
