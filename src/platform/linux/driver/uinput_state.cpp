#include "platform/linux/driver/uinput_state.h"

#include "base/unique_fd.h"
#include "protocol/driver_helper.h"

#include <QFile>
#include <QFileInfo>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace tamsel {

namespace {

/// A line of the file names uinput.ko, compressed or not, before the first colon.
bool namesUinput(const QString& list) {
    QFile file(list);
    if (!file.open(QFile::ReadOnly))
        return false;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        const QByteArray module = line.left(line.indexOf(':')).trimmed();
        if (module.mid(module.lastIndexOf('/') + 1).startsWith("uinput.ko"))
            return true;
    }
    return false;
}

bool kernelHasUinput(const QString& root) {
    const QString folder = root + QStringLiteral("/lib/modules/") + kernelRelease();
    return namesUinput(folder + QStringLiteral("/modules.dep")) ||
           namesUinput(folder + QStringLiteral("/modules.builtin"));
}

bool groupHasAccess(const QByteArray& node, const QByteArray& group) {
    struct stat info {};
    if (::stat(node.constData(), &info) != 0)
        return false;
    ::group entry{};
    ::group* found = nullptr;
    std::array<char, 16384> buffer{};
    return ::getgrnam_r(group.constData(), &entry, buffer.data(), buffer.size(), &found) == 0 &&
           found && entry.gr_gid == info.st_gid && (info.st_mode & 0060U) == 0060U;
}

enum class Opening { succeeds, isRefused, findsNoDriver };

/// Opening the node makes the kernel load the driver where it has one, and changes nothing else.
Opening openAsUser(const QByteArray& node) {
    const UniqueFd opened(::open(node.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    if (!opened.isOpen())
        return errno == ENXIO || errno == ENODEV ? Opening::findsNoDriver : Opening::isRefused;
    return Opening::succeeds;
}

/// The version of the rule in this file; an empty file covers every rule of its name.
std::optional<QString> versionIn(const QString& rule) {
    constexpr qint64 firstLine = 256;
    QFile file(rule);
    const QByteArray text = file.open(QFile::ReadOnly) ? file.read(firstLine) : QByteArray();
    if (text.isEmpty())
        return std::nullopt;
    const auto version =
        driver::accessRuleVersion({text.constData(), static_cast<std::size_t>(text.size())});
    return QString::fromUtf8(version.data(), static_cast<qsizetype>(version.size()));
}

std::optional<QString> installedVersion(const QString& root) {
    const QString rule = root + QLatin1String(driver::accessRuleFile);
    return versionIn(QFileInfo::exists(rule) ? rule
                                             : root + QLatin1String(driver::packagedRuleFile));
}

} // namespace

QString kernelRelease() {
    utsname name{};
    return ::uname(&name) == 0 ? QString::fromLocal8Bit(name.release) : QString();
}

UinputState readUinputState(const UinputPlaces& places) {
    const QByteArray node = QFile::encodeName(places.root + QLatin1String(driver::uinputNode));
    UinputState state;
    state.hasNode = ::access(node.constData(), F_OK) == 0;
    const Opening opening = openAsUser(node);
    state.isInKernel =
        state.hasNode ? opening != Opening::findsNoDriver : kernelHasUinput(places.root);
    state.hasAccess = places.daemonGroup ? groupHasAccess(node, places.daemonGroup->toUtf8())
                                         : opening == Opening::succeeds;
    state.installedVersion = installedVersion(places.root);
    return state;
}

} // namespace tamsel
