#include "platform/linux/services/autostart_entry.h"

#include "platform/linux/services/service_errors.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QSaveFile>
#include <QStandardPaths>

namespace tamsel {

namespace {

constexpr qint64 largestEntry = qint64{64} * 1024;

/// A text as the value of a key.
QByteArray textValue(QString text) {
    text.replace(u'\\', QStringLiteral("\\\\"));
    text.replace(u'\n', QStringLiteral("\\n"));
    text.replace(u'\t', QStringLiteral("\\t"));
    text.replace(u'\r', QStringLiteral("\\r"));
    return text.toUtf8();
}

/// A program's path as the first word of an Exec value: in double quotes, with the four characters
/// that are special in them escaped and percent signs doubled.
QString execWord(const QString& program) {
    QString word = QStringLiteral("\"");
    for (const QChar c : program) {
        if (QStringLiteral("\"`$\\").contains(c))
            word += u'\\';
        word += c;
        if (c == u'%')
            word += c;
    }
    return word + u'"';
}

/// The text that is a key's value.
QString textOf(const QString& raw) {
    static const QMap<QChar, QChar> escapes{
        {u's', u' '}, {u'n', u'\n'}, {u't', u'\t'}, {u'r', u'\r'}, {u'\\', u'\\'}};
    QString out;
    for (qsizetype i = 0; i < raw.size(); ++i) {
        const bool isEscape = raw[i] == u'\\' && i + 1 < raw.size() && escapes.contains(raw[i + 1]);
        out += isEscape ? escapes.value(raw[++i]) : raw[i];
    }
    return out;
}

/// The first word of an Exec value.
QString programOf(const QString& exec) {
    QString out;
    bool isQuoted = false;
    for (qsizetype i = 0; i < exec.size(); ++i) {
        const QChar c = exec[i];
        if (c == u'"')
            isQuoted = !isQuoted;
        else if (c == u' ' && !isQuoted)
            break;
        else if (c == u'\\' && i + 1 < exec.size())
            out += exec[++i];
        else
            out += c;
    }
    return out.replace(QStringLiteral("%%"), QStringLiteral("%"));
}

/// The entries of the group that counts.
QMap<QString, QString> readEntry(const QString& file) {
    QMap<QString, QString> entries;
    QFile in(file);
    if (!in.open(QFile::ReadOnly))
        return entries;
    bool isInGroup = false;
    const QStringList lines = QString::fromUtf8(in.read(largestEntry)).split(u'\n');
    for (const QString& line : lines) {
        if (line.startsWith(u'['))
            isInGroup = line.trimmed() == u"[Desktop Entry]";
        else if (const qsizetype at = line.indexOf(u'='); isInGroup && at > 0)
            entries.insert(line.left(at).trimmed(), textOf(line.mid(at + 1).trimmed()));
    }
    return entries;
}

tl::unexpected<ServiceError> failed(const QString& file, const QString& reason) {
    return tl::unexpected(
        serviceError(ServiceFailure::failed, file + QStringLiteral(": ") + reason));
}

} // namespace

AutostartEntry::AutostartEntry(QString file, QString program)
    : m_file(std::move(file)), m_program(std::move(program)) {}

QString AutostartEntry::standardFile() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/autostart/app.tamsel.desktop");
}

ServiceStatus AutostartEntry::status() {
    const QMap<QString, QString> entry = readEntry(m_file);
    const bool isOff = entry.value(QStringLiteral("Hidden")) == u"true" ||
                       entry.value(QStringLiteral("X-GNOME-Autostart-enabled")) == u"false";
    const auto isThere = [](const QString& program) {
        return !program.isEmpty() && !QStandardPaths::findExecutable(program).isEmpty();
    };
    const QString condition = entry.value(QStringLiteral("TryExec"));
    return !isOff && isThere(programOf(entry.value(QStringLiteral("Exec")))) &&
                   (condition.isEmpty() || isThere(condition))
               ? ServiceStatus::enabled
               : ServiceStatus::notRegistered;
}

ServiceResult AutostartEntry::registerService() {
    if (const QString folder = QFileInfo(m_file).absolutePath(); !QDir().mkpath(folder))
        return failed(folder, tr("The folder can't be made."));
    QSaveFile file(m_file);
    file.setDirectWriteFallback(false);
    // The program may be gone by a later login (a build folder, say): the entry then does nothing.
    const QByteArray text = "[Desktop Entry]\n"
                            "Type=Application\n"
                            "Version=1.4\n"
                            "Name=Tamsel\n"
                            "Icon=app.tamsel\n"
                            "TryExec=" +
                            textValue(m_program) + "\nExec=" + textValue(execWord(m_program)) +
                            "\n"
                            "Terminal=false\n";
    if (!file.open(QFile::WriteOnly) || file.write(text) != text.size() || !file.commit())
        return failed(m_file, file.errorString());
    return {};
}

ServiceResult AutostartEntry::unregisterService() {
    QFile file(m_file);
    // The link itself counts, should it be one that leads nowhere.
    if ((file.exists() || QFileInfo(m_file).isSymLink()) && !file.remove())
        return failed(m_file, file.errorString());
    return {};
}

} // namespace tamsel
