#pragma once

#include "archive_files.h"
#include "update_listener.h"

#include "platform/fake/fake_application.h"
#include "platform/fake/fake_main_queue.h"
#include "platform/fake/fake_system.h"
#include "platform/linux/net/secure_requests.h"
#include "platform/linux/process/qt_main_queue.h"
#include "platform/linux/process/thread_background_queue.h"
#include "platform/linux/store/folder_bundle.h"
#include "platform/linux/updater/archive_signature.h"
#include "platform/linux/updater/feed_updater.h"
#include "platform/linux/updater/signed_feed.h"
#include "support/files.h"
#include "support/tls_server.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace tamsel {

/// An updater of a real copy, with a feed and an archive on a real server.
struct UpdateSessionTest : testing::Test {
    QTemporaryDir folder;
    QString copy = folder.filePath("tamsel");
    TlsServer server;
    archive_signature::KeyPair keys = archive_signature::makeKeys();
    QtMainQueue queue;
    Network network = Network::real();
    FakeMainQueue time;
    FakeClock clock{time};
    ThreadBackgroundQueue background{[] {}};
    FakeUserDefaults defaults;
    FakeApplication application;
    std::unique_ptr<FolderBundle> bundle;
    std::unique_ptr<SecureRequests> requests;
    Listener listener;
    std::unique_ptr<SPUUpdater> updater;

    UpdateSessionTest() {
        install();
        archive(copyOf("150"));
    }
    /// The files of a copy that may be put in place, in one folder, with those in `also`.
    QList<ArchiveFile> copyOf(const QString& build, const QByteArray& also = {}) const {
        return {{"tamsel-1.5/bin/tamsel", "#!/bin/sh\n"},
                {"tamsel-1.5/libexec/tamsel/tamsel-relauncher", "#!/bin/sh\n"},
                {"tamsel-1.5/share/tamsel/Info.plist", info(build, keys.publicKey)},
                {"tamsel-1.5/share/tamsel/contents", contents + also}};
    }
    static constexpr auto contents =
        "bin/tamsel\nlibexec/tamsel/tamsel-relauncher\nshare/tamsel/Info.plist\n";

    void install() {
        put("bin/tamsel", "#!/bin/sh\n");
        put("libexec/tamsel/tamsel-relauncher", "#!/bin/sh\nprintf '%s\\n' \"$@\" >" +
                                                    QFile::encodeName(folder.filePath("told")) +
                                                    "\n");
        put("share/tamsel/Info.plist", info("142", keys.publicKey));
        put("share/tamsel/contents", QByteArray(contents) + "share/tamsel/ca.pem\n");
        QFile::copy(server.authority(), copy + "/share/tamsel/ca.pem");
        listener.feed = server.address("/feed") + "?t=1";
        make();
    }

    static QByteArray info(const QString& build, const QString& key) {
        return QString("<plist><dict><key>CFBundleVersion</key><string>%1</string>"
                       "<key>QLFeedURL</key><string>https://a.b/</string>"
                       "<key>QLPublicKey</key><string>%2</string></dict></plist>")
            .arg(build, key)
            .toUtf8();
    }
    void put(const QString& name, const QByteArray& bytes) const {
        writeFile(copy + '/' + name, bytes, QFile::Permissions(0x7755));
    }
    void make(const RelaunchOrder& order = {}) {
        bundle = std::make_unique<FolderBundle>(copy + "/share/tamsel", copy + "/bin");
        requests = std::make_unique<SecureRequests>(*bundle, queue, network);
        using std::chrono::milliseconds;
        const UpdatePatience patience{milliseconds(400), milliseconds(400), milliseconds(5000)};
        updater = FeedUpdaterMaker({*bundle, queue, clock, background, defaults, application,
                                    *requests, copy + "/bin", patience},
                                   order)
                      .makeUpdater(listener, listener);
        static_cast<void>(updater->startUpdater());
    }
    QByteArray archiveBytes;
    void archive(const QList<ArchiveFile>& files) {
        const QString path = folder.filePath("made");
        writeArchive(path, files);
        QFile file(path);
        ASSERT_TRUE(file.open(QFile::ReadOnly));
        archiveBytes = file.readAll();
        offer(*archive_signature::sign(path, keys.secretKey), archiveBytes.size());
    }
    void offer(const QString& signature, qint64 length, const QString& version = "150",
               const QString& at = "/archive") {
        server.replies["/archive"] = TlsServer::ok(archiveBytes);
        AppcastEntry entry;
        entry.version = version;
        entry.shortVersion = "1.5";
        entry.url = QUrl(at.startsWith('/') ? server.address(at) : at);
        entry.length = static_cast<quint64>(length);
        entry.edSignature = good = signature;
        entry.sha256 = QCryptographicHash::hash(archiveBytes, QCryptographicHash::Sha256);
        offer({entry});
    }
    void offer(const QList<AppcastEntry>& entries) {
        offered = {entries, offered.sequence, {}, QDateTime::fromSecsSinceEpoch(4'000'000'000)};
        server.replies["/feed"] = TlsServer::ok(*sealFeed(offered, {}, keys.secretKey));
    }
    Appcast offered{{}, 1, {}, {}};
    QString good; ///< signature
    static void waitFor(const std::function<bool()>& isDone) {
        for (int i = 0; i < 2'000 && !isDone(); ++i) {
            QEventLoop loop;
            QTimer::singleShot(10, &loop, &QEventLoop::quit);
            loop.exec();
        }
        EXPECT_TRUE(isDone());
    }
    /// Until a session has ended, or waits for this process to end.
    QStringList check(bool byUser = true) {
        byUser ? updater->checkForUpdates() : updater->checkForUpdatesInBackground();
        EXPECT_TRUE(updater->sessionInProgress());
        waitFor([this] { return !updater->sessionInProgress() || application.terminations > 0; });
        return listener.take();
    }
    /// The copy as it was, and nothing beside it.
    void expectUntouched() const {
        QFile told(folder.filePath("told"));
        EXPECT_FALSE(told.exists());
        EXPECT_EQ(bundle->infoString("CFBundleVersion"), "142");
        QFile plist(copy + "/share/tamsel/Info.plist");
        EXPECT_TRUE(plist.open(QFile::ReadOnly));
        EXPECT_EQ(plist.readAll(), info("142", keys.publicKey));
        const auto all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
        const QStringList wanted{"made", "tamsel"};
        // What is removed goes in the background.
        waitFor([&] { return QDir(folder.path()).entryList(all, QDir::Name) == wanted; });
    }
};

} // namespace tamsel
