#include "publish.h"

#include "appcast_writer.h"
#include "platform/linux/store/folder_bundle.h"
#include "platform/linux/net/secure_requests.h"
#include "platform/linux/updater/archive_signature.h"
#include "platform/linux/updater/archive_unpacker.h"
#include "platform/linux/updater/installed_copy.h"
#include "platform/linux/updater/version_order.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryDir>

namespace tamsel {

namespace {

tl::unexpected<Error> notWritten(const QFileDevice& file) {
    return fail(file.errorString().toStdString(), file.fileName().toStdString());
}

Result<QByteArray> read(const QString& path) {
    QFile file(path);
    if (!file.open(QFile::ReadOnly))
        return notWritten(file);
    return file.readAll();
}

Result<QList<AppcastEntry>> readFeed(const QString& path) {
    if (!QFileInfo::exists(path))
        return QList<AppcastEntry>();
    const auto text = read(path);
    if (!text)
        return tl::unexpected(text.error());
    return parseAppcast(*text);
}

/// What the archive says of itself.
struct Identity {
    QString version;
    QString shortVersion;
    QString publicKey;
};

Result<Identity> look(const QString& archive) {
    const QTemporaryDir folder;
    if (const auto done = unpackArchive(archive, folder.path(), {}, false); !done)
        return fail("can't be unpacked: " + done.error().detail.toStdString(),
                    archive.toStdString());
    const auto copy = InstalledCopy::findIn(folder.path());
    if (!copy)
        return fail(copy.error().what, archive.toStdString());
    const FolderBundle bundle(*copy + QStringLiteral("/share/tamsel"), *copy);
    const auto info = [&bundle](const char* key) {
        return bundle.infoString(QLatin1String(key)).value_or(QString());
    };
    return Identity{info("CFBundleVersion"), info("CFBundleShortVersionString"),
                    info("QLPublicKey")};
}

} // namespace

Result<QString> makeKeyFile(const QString& path) {
    QFile file(path);
    const auto keys = archive_signature::makeKeys();
    if (!file.open(QFile::WriteOnly | QFile::NewOnly, QFile::ReadOwner | QFile::WriteOwner) ||
        file.write(keys.secretKey.toLatin1() + '\n') < 0 || !file.flush())
        return notWritten(file);
    return keys.publicKey;
}

Result<QString> publicKeyIn(const QString& file) {
    return read(file).and_then([](const QByteArray& text) {
        return archive_signature::publicKeyOf(QString::fromLatin1(text.trimmed()));
    });
}

Result<QString> publish(const Release& release) {
    const auto secret = read(release.keyFile);
    const auto key = publicKeyIn(release.keyFile);
    if (!secret || !key)
        return tl::unexpected(secret ? key.error() : secret.error());
    const auto identity = look(release.archive);
    if (!identity)
        return tl::unexpected(identity.error());
    if (identity->publicKey != *key)
        return fail("its copies trust another key than " + release.keyFile.toStdString(),
                    release.archive.toStdString());
    auto entries = readFeed(release.feed);
    if (!entries)
        return tl::unexpected(entries.error());
    for (const AppcastEntry& entry : *entries) {
        if (std::is_lteq(compareVersions(identity->version, entry.version)))
            return fail("version " + identity->version.toStdString() + " is not newer than " +
                            entry.version.toStdString(),
                        release.feed.toStdString());
    }
    AppcastEntry entry;
    entry.title = release.title.isEmpty() ? QStringLiteral("Tamsel ") + identity->shortVersion
                                          : release.title;
    entry.version = identity->version;
    entry.shortVersion = identity->shortVersion;
    entry.minimumSystem = release.minimumSystem;
    entry.hardware = release.hardware;
    entry.os = QStringLiteral("linux");
    entry.url = QUrl(release.url, QUrl::StrictMode);
    if (!SecureRequests::isAllowed(entry.url))
        return fail("is not an https address", release.url.toStdString());
    entry.length = static_cast<std::uint64_t>(QFileInfo(release.archive).size());
    const auto signature =
        archive_signature::sign(release.archive, QString::fromLatin1(secret->trimmed()));
    if (!signature)
        return tl::unexpected(signature.error());
    entry.edSignature = *signature;
    entries->prepend(entry);

    QSaveFile feed(release.feed);
    if (!feed.open(QFile::WriteOnly) || feed.write(writeAppcast(*entries)) < 0 || !feed.commit())
        return notWritten(feed);
    return entry.version;
}

} // namespace tamsel
