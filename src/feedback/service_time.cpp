#include "feedback/service_time.h"

#include "platform/clock.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace tamsel {

namespace {

struct TimeTexts {
    Q_DECLARE_TR_FUNCTIONS(FeedbackVM)
};

QString timePattern() {
    const auto date = QStringLiteral("([0-9]{4}-[0-9]{2}-[0-9]{2})");
    const auto time = QStringLiteral("([0-9]{2}:[0-9]{2}:[0-9]{2})(?:\\.[0-9]{1,9})?");
    const auto internet = QStringLiteral("(?:Z|([+-])([0-9]{2}):([0-9]{2}))");
    const auto spaced = QStringLiteral(" ([+-])([0-9]{2})([0-9]{2})(?: %1)?");
    const auto zoneName = QStringLiteral("(?:[A-Z]{2,5}|GMT[+-][0-9]{1,2}(?::?[0-9]{2})?)");
    return QStringLiteral("%1(?|T%2%3| %2%4)").arg(date, time, internet, spaced.arg(zoneName));
}

} // namespace

TimeStyle TimeStyle::of(const QLocale& locale) {
    const bool isJalali =
        locale.territory() == QLocale::Iran || locale.territory() == QLocale::Afghanistan;
    return {locale, isJalali ? QCalendar(QCalendar::System::Jalali) : QCalendar()};
}

std::optional<QDateTime> parseServiceTime(const QString& text) {
    static const QRegularExpression forms(QRegularExpression::anchoredPattern(timePattern()));
    const QRegularExpressionMatch match = forms.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const QDate date = QDate::fromString(match.captured(1), Qt::ISODate);
    const QTime time = QTime::fromString(match.captured(2), QStringLiteral("HH:mm:ss"));
    const int minutes = match.captured(5).toInt();
    const int offset = match.captured(4).toInt() * 60 + minutes;
    if (!date.isValid() || !time.isValid() || minutes > 59 || offset >= 24 * 60)
        return std::nullopt;
    const int ahead = match.captured(3) == u"-" ? -offset : offset;
    return QDateTime(date, time, Qt::UTC).addSecs(qint64{-60} * ahead);
}

QString displayedTime(const QString& text, const Clock& clock, const TimeStyle& style) {
    const auto parsed = parseServiceTime(text);
    if (!parsed)
        return text;
    const QTimeZone zone = clock.timeZone();
    const QDateTime time = parsed->toTimeZone(zone);
    const auto now = std::chrono::floor<std::chrono::milliseconds>(clock.now().time_since_epoch());
    const QDate today = QDateTime::fromMSecsSinceEpoch(now.count(), zone).date();
    const QString clockText = style.locale.toString(time.time(), QStringLiteral("HH:mm"));
    if (time.date() == today)
        return TimeTexts::tr("Today") + u' ' + clockText;
    if (time.date() == today.addDays(-1))
        return TimeTexts::tr("Yesterday") + u' ' + clockText;
    return style.locale.toString(time.date(), QStringLiteral("MM-dd"), style.calendar) + u' ' +
           clockText;
}

} // namespace tamsel
