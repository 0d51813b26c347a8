#include "driver/stuck_driver.h"

#include "log/logger.h"
#include "platform/process_runner.h"

#include <QStringDecoder>
#include <QStringList>

#include <charconv>
#include <optional>
#include <string_view>

namespace tamsel {

namespace {

const QString pgrep = QStringLiteral("/usr/bin/pgrep");
const QString scriptRunner = QStringLiteral("/usr/bin/osascript");

QStringView trimmed(QStringView text) {
    const auto isBlank = [](QChar c) {
        return c == u'\t' || c.category() == QChar::Separator_Space;
    };
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text;
}

/// An optional sign and digits, nothing else.
std::optional<qint64> integer(QStringView text) {
    const QByteArray ascii = text.toUtf8();
    std::string_view digits(ascii.constData(), static_cast<std::size_t>(ascii.size()));
    if (digits.starts_with('+')) {
        digits.remove_prefix(1);
        if (digits.starts_with('-'))
            return std::nullopt;
    }
    qint64 value = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

QStringList decimals(const QList<qint64>& numbers, const QString& prefix) {
    QStringList out;
    for (const qint64 number : numbers)
        out << prefix + QString::number(number);
    return out;
}

} // namespace

QList<qint64> processNumbers(const QByteArray& output) {
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    const QString text = decode(output);
    // Nothing can follow the output, so that a sequence left open is an error too; the line feed
    // makes the decoder see that.
    const QString closing = decode(QByteArrayLiteral("\n"));
    if (decode.hasError() || closing.size() != 1)
        return {};
    QList<qint64> numbers;
    for (const QStringView piece : QStringView(text).split(u'\n', Qt::SkipEmptyParts)) {
        if (const auto number = integer(trimmed(piece)))
            numbers.append(*number);
    }
    return numbers;
}

QString escapedForScript(QString text) {
    return text.replace(u'\\', QStringLiteral("\\\\")).replace(u'"', QStringLiteral("\\\""));
}

QString killScript(const QList<qint64>& processes) {
    const QString command =
        decimals(processes, QStringLiteral("kill -9 ")).join(QStringLiteral("; "));
    return QStringLiteral("do shell script \"") + escapedForScript(command) +
           QStringLiteral("\" with administrator privileges");
}

void killStuckDext(const QString& driverBundleId, ProcessRunner& processes, Logger& logger) {
    const auto found = processes.run(pgrep, {QStringLiteral("-f"), driverBundleId});
    const QList<qint64> numbers = found ? processNumbers(found->standardOutput) : QList<qint64>();
    if (numbers.isEmpty()) {
        logger.warning(QStringLiteral("[SysExtMgr] 未找到卡住的 dext 進程"));
        return;
    }
    const auto killed = processes.run(scriptRunner, {QStringLiteral("-e"), killScript(numbers)});
    if (killed && killed->exitStatus == 0)
        logger.info(QStringLiteral("[SysExtMgr] 已殺死舊 dext 進程: [") +
                    decimals(numbers, {}).join(QStringLiteral(", ")) + u']');
    else
        logger.error(QStringLiteral("[SysExtMgr] 殺死舊驅動失敗（用戶取消或權限不足）"));
}

} // namespace tamsel
