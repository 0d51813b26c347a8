#include "platform/linux/process/administrator_script.h"

#include <algorithm>

namespace tamsel {

namespace {

/// Process 1 is the system itself; 0 and below name groups.
constexpr int leastProcess = 2;
constexpr int greatestProcess = 4 * 1024 * 1024; // PID_MAX_LIMIT

bool isProcessNumber(QStringView text) {
    constexpr qsizetype mostDigits = 7;
    if (text.isEmpty() || text.size() > mostDigits || text.front() == u'0' ||
        !std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; }))
        return false;
    const int number = text.toInt();
    return number >= leastProcess && number <= greatestProcess;
}

} // namespace

std::optional<QStringList> processesToKill(const QString& script) {
    constexpr QStringView before = u"do shell script \"";
    constexpr QStringView after = u"\" with administrator privileges";
    constexpr QStringView kill = u"kill -9 ";
    if (script.size() < before.size() + after.size() || !script.startsWith(before) ||
        !script.endsWith(after))
        return std::nullopt;
    const QStringView command = QStringView(script).sliced(before.size()).chopped(after.size());
    QStringList numbers;
    for (const QStringView part : command.split(u"; ")) {
        if (!part.startsWith(kill) || !isProcessNumber(part.sliced(kill.size())))
            return std::nullopt;
        numbers << part.sliced(kill.size()).toString();
    }
    return numbers;
}

} // namespace tamsel
