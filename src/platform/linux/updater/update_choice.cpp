#include "platform/linux/updater/update_choice.h"

#include "platform/linux/net/secure_requests.h"
#include "platform/linux/updater/archive_signature.h"
#include "platform/linux/updater/version_order.h"

#include <QSysInfo>

namespace tamsel {

namespace {

/// The numbers in front: what a distribution adds ("-28-amd64") is not the kernel's.
QString kernelRelease(const QString& system) {
    const auto isPart = [](QChar c) { return c == u'.' || (c >= u'0' && c <= u'9'); };
    const auto end = std::find_if_not(system.begin(), system.end(), isPart);
    return system.left(end - system.begin());
}

bool runsOn(const AppcastEntry& entry, const UpdateWish& wish) {
    const QString system = kernelRelease(wish.system);
    if (!entry.minimumSystem.isEmpty() && std::is_lt(compareVersions(system, entry.minimumSystem)))
        return false;
    if (!entry.maximumSystem.isEmpty() && std::is_gt(compareVersions(system, entry.maximumSystem)))
        return false;
    if (entry.hardware.isEmpty())
        return true;
    const QStringList processors = entry.hardware.split(u',');
    return std::any_of(processors.begin(), processors.end(), [&wish](const QString& processor) {
        return processor.trimmed() == wish.processor;
    });
}

/// It can be fetched and checked; what can't must not stand in the way of what can.
bool isComplete(const AppcastEntry& entry) {
    return !entry.version.isEmpty() && SecureRequests::isAllowed(entry.url) && entry.length > 0 &&
           entry.length <= maxArchive && !entry.sha256.isEmpty() &&
           archive_signature::isSignature(entry.edSignature);
}

bool isWanted(const AppcastEntry& entry, const UpdateWish& wish) {
    return isComplete(entry) && entry.channel.isEmpty() &&
           (entry.os.isEmpty() || entry.os == u"linux") && entry.version != wish.skippedVersion &&
           std::is_gt(compareVersions(entry.version, wish.version)) && runsOn(entry, wish);
}

} // namespace

QString thisSystem() {
    return QSysInfo::kernelVersion();
}

QString thisProcessor() {
    return QSysInfo::currentCpuArchitecture();
}

std::optional<AppcastEntry> chooseUpdate(const QList<AppcastEntry>& entries,
                                         const UpdateWish& wish) {
    std::optional<AppcastEntry> best;
    for (const AppcastEntry& entry : entries) {
        if (isWanted(entry, wish) &&
            (!best || std::is_gt(compareVersions(entry.version, best->version))))
            best = entry;
    }
    return best;
}

} // namespace tamsel
