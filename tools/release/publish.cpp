#include "publish.h"

#include "platform/linux/net/secure_requests.h"
#include "platform/linux/store/folder_bundle.h"
#include "platform/linux/updater/archive_signature.h"
#include "platform/linux/updater/archive_unpacker.h"
#include "platform/linux/updater/installed_copy.h"
#include "platform/linux/updater/release_check.h"
#include "platform/linux/updater/signed_feed.h"
#include "platform/linux/updater/update_choice.h"
#include "platform/linux/updater/version_order.h"
#include "secret_key.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryDir>

namespace tamsel {

namespace {

tl::unexpected<Error> notWritten(const QFileDevice& file) {
    return fail(file.errorString().toStdString(), file.fileName().toStdString());
}

/// The feed as it stands; empty when it isn't there.
struct OpenFeed {
    Appcast appcast;
    std::optional<KeyList> keys; ///< nothing: the copies' own keys are in force
};

Result<OpenFeed> readFeed(const QString& path) {
    if (!QFileInfo::exists(path))
        return OpenFeed{};
    QFile file(path);
    if (!file.open(QFile::ReadOnly))
        return notWritten(file);
    return readOwnFeed(file.readAll()).map([](const OwnFeed& feed) {
        return OpenFeed{feed.appcast, feed.keys};
    });
}

Result<void> writeFeed(OpenFeed feed, const FeedFile& where) {
    const auto secret = secretKeyIn(where.keyFile);
    const auto key = publicKeyIn(where.keyFile);
    if (!secret || !key)
        return tl::unexpected(secret ? key.error() : secret.error());
    if (feed.keys && !feed.keys->keys.contains(*key))
        return fail("is not one of the keys in force", where.keyFile.toStdString());
    feed.appcast.sequence += 1;
    feed.appcast.date = QDateTime::fromSecsSinceEpoch(QDateTime::currentSecsSinceEpoch(), Qt::UTC);
    feed.appcast.expires = feed.appcast.date.addDays(where.days);
    const auto text = sealFeed(feed.appcast, feed.keys.value_or(KeyList()), *secret);
    if (!text)
        return tl::unexpected(text.error());
    QSaveFile file(where.path);
    if (!file.open(QFile::WriteOnly) || file.write(*text) < 0 || !file.commit())
        return notWritten(file);
    return {};
}

Result<QByteArray> digestOf(const QString& archive) {
    QFile file(archive);
    QCryptographicHash digest(QCryptographicHash::Sha256);
    if (!file.open(QFile::ReadOnly) || !digest.addData(&file))
        return notWritten(file);
    return digest.result();
}

/// What the archive says of itself, when the copies before it would take it.
Result<ReleaseFacts> look(const QString& archive, const QStringList& trusted,
                          const std::optional<KeyList>& keys) {
    const QTemporaryDir folder;
    if (const auto done = unpackArchive(archive, folder.path(), {}, false); !done)
        return fail("can't be unpacked: " + done.error().detail.toStdString(),
                    archive.toStdString());
    return InstalledCopy::findIn(folder.path())
        .and_then([&](const QString& copy) {
            const FolderBundle bundle(copy + QStringLiteral("/share/tamsel"), copy);
            const QString offline =
                bundle.infoString(QStringLiteral("QLOfflineKey")).value_or(QString());
            if (keys && !KeyList::read(keys->text(), offline))
                return Result<ReleaseFacts>(fail("its copies trust another offline key"));
            return checkRelease(folder.path(), trusted, offline);
        })
        .map_error([&](const Error& error) {
            return Error{error.what, archive.toStdString()};
        });
}

Result<void> checkNewer(const QString& version, const FeedFile& where, const Appcast& appcast) {
    for (const AppcastEntry& entry : appcast.entries) {
        if (std::is_lteq(compareVersions(version, entry.version)))
            return fail("version " + version.toStdString() + " is not newer than " +
                            entry.version.toStdString(),
                        where.path.toStdString());
    }
    return {};
}

Result<AppcastEntry> entryOf(const Release& release, const ReleaseFacts& facts,
                             const QString& secret) {
    AppcastEntry entry;
    entry.title =
        release.title.isEmpty() ? QStringLiteral("Tamsel ") + facts.shortVersion : release.title;
    entry.version = facts.version;
    entry.shortVersion = facts.shortVersion;
    entry.minimumSystem = release.minimumSystem;
    entry.hardware = release.hardware;
    entry.os = QStringLiteral("linux");
    entry.url = QUrl(release.url, QUrl::StrictMode);
    if (!SecureRequests::isAllowed(entry.url))
        return fail("is not an https address", release.url.toStdString());
    entry.length = static_cast<std::uint64_t>(QFileInfo(release.archive).size());
    if (entry.length > maxArchive)
        return fail("is too large", release.archive.toStdString());
    const auto digest = digestOf(release.archive);
    const auto signature = archive_signature::sign(release.archive, secret);
    if (!digest || !signature)
        return tl::unexpected(digest ? signature.error() : digest.error());
    entry.sha256 = *digest;
    entry.edSignature = *signature;
    return entry;
}

} // namespace

Result<QString> publish(const Release& release, const FeedFile& where) {
    const auto secret = secretKeyIn(where.keyFile);
    const auto key = publicKeyIn(where.keyFile);
    if (!secret || !key)
        return tl::unexpected(secret ? key.error() : secret.error());
    auto feed = readFeed(where.path);
    if (!feed)
        return tl::unexpected(feed.error());
    const auto facts = look(release.archive, {*key}, feed->keys);
    if (!facts)
        return tl::unexpected(facts.error());
    if (const auto newer = checkNewer(facts->version, where, feed->appcast); !newer)
        return tl::unexpected(newer.error());
    const auto entry = entryOf(release, *facts, *secret);
    if (!entry)
        return tl::unexpected(entry.error());
    feed->appcast.entries.prepend(*entry);
    return writeFeed(*feed, where).map([&entry] { return entry->version; });
}

Result<QString> refresh(const FeedFile& where) {
    return readFeed(where.path).and_then([&where](const OpenFeed& feed) {
        return writeFeed(feed, where).map([&where] { return where.path; });
    });
}

Result<QString> changeKeys(KeyChange change, const QString& publicKey,
                           const QString& offlineKeyFile, const FeedFile& where) {
    auto feed = readFeed(where.path);
    const auto secret = secretKeyIn(offlineKeyFile);
    const auto ownKey = publicKeyIn(where.keyFile);
    if (!feed || !secret || !ownKey)
        return tl::unexpected(!feed ? feed.error() : !secret ? secret.error() : ownKey.error());
    KeyList list = feed->keys.value_or(KeyList{0, {*ownKey}, {}});
    list.keys.removeAll(publicKey);
    if (change == KeyChange::announce)
        list.keys.append(publicKey);
    const auto made = KeyList::make(list.number + 1, list.keys, *secret);
    if (!made)
        return tl::unexpected(made.error());
    feed->keys = *made;
    // Under a new list the feeds are counted anew.
    feed->appcast.sequence = 0;
    return writeFeed(*feed, where).map([&made] { return made->text(); });
}

Result<QString> writeContents(const QString& folder) {
    QSaveFile file(folder + QStringLiteral("/share/tamsel/contents"));
    const QByteArray list = InstalledCopy::listContents(QFileInfo(folder).absoluteFilePath());
    if (!file.open(QFile::WriteOnly) || file.write(list) < 0 || !file.commit())
        return notWritten(file);
    return file.fileName();
}

} // namespace tamsel
