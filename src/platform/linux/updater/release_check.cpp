#include "platform/linux/updater/release_check.h"

#include "platform/linux/net/secure_requests.h"
#include "platform/linux/store/folder_bundle.h"
#include "platform/linux/updater/installed_copy.h"
#include "platform/linux/updater/key_list.h"

#include <QUrl>

#include <algorithm>

namespace tamsel {

namespace {

Result<void> checkTrust(const FolderBundle& bundle, const QStringList& trusted,
                        const QString& offlineKey) {
    const auto keys = BundleKeys::of(bundle);
    if (!keys)
        return tl::unexpected(keys.error());
    if (keys->offlineKey != offlineKey)
        return fail("its copies trust another offline key");
    const QStringList& own = keys->list.keys;
    if (!std::any_of(own.begin(), own.end(),
                     [&trusted](const QString& key) { return trusted.contains(key); }))
        return fail("its copies trust other keys");
    return {};
}

} // namespace

Result<ReleaseFacts> checkRelease(const QString& tree, const QStringList& trusted,
                                  const QString& offlineKey) {
    const auto folder = InstalledCopy::findIn(tree);
    if (!folder)
        return tl::unexpected(folder.error());
    if (const auto alone = InstalledCopy::checkContents(*folder); !alone)
        return tl::unexpected(alone.error());
    const FolderBundle bundle(*folder + QStringLiteral("/share/tamsel"),
                              *folder + QStringLiteral("/bin"));
    const auto info = [&bundle](const char* key) {
        return bundle.infoString(QLatin1String(key)).value_or(QString());
    };
    if (!SecureRequests::isAllowed(QUrl(info("QLFeedURL"), QUrl::StrictMode)))
        return fail("its copies have no feed for the version after it");
    if (const auto trust = checkTrust(bundle, trusted, offlineKey); !trust)
        return tl::unexpected(trust.error());
    ReleaseFacts facts{*folder, info("CFBundleVersion"), info("CFBundleShortVersionString")};
    if (facts.version.isEmpty())
        return fail("does not say which version it is");
    return facts;
}

} // namespace tamsel
