#include "platform/linux/updater/update_session.h"

#include "platform/application.h"
#include "platform/background_queue.h"
#include "platform/bundle.h"
#include "platform/clock.h"
#include "platform/linux/updater/archive_signature.h"
#include "platform/linux/updater/relaunch.h"
#include "platform/linux/updater/release_check.h"
#include "platform/linux/updater/update_choice.h"
#include "platform/linux/updater/update_texts.h"
#include "platform/user_defaults.h"

#include <QDir>
#include <QPointer>

#include <utility>

namespace tamsel {

namespace {

constexpr std::uint64_t maxFeed = std::uint64_t{1024} * 1024;
const QString skippedKey = QStringLiteral("SUSkippedVersion");
const QString memoryKey = QStringLiteral("UpdateFeedMemory");

QString kept(UserDefaults& defaults, const QString& key) {
    return QString::fromUtf8(
        defaults.dataForKey(key).value_or(std::nullopt).value_or(QByteArray()));
}

QString words(const Error& error) {
    return QString::fromStdString(error.description());
}

} // namespace

/// What came of verifying, unpacking and looking at an archive: where the copy is, or an error.
struct UpdateSession::Unpacked {
    QString tree;
    std::optional<UpdaterError> error;
};

UpdateSession::UpdateSession(UpdateParts parts, BundleKeys keys, AskedBy askedBy,
                             SPUUserDriver& driver, SPUUpdaterDelegate& delegate,
                             std::function<void()> ended)
    : m_parts(std::move(parts)),
      m_askedBy(askedBy),
      m_driver(driver),
      m_delegate(delegate),
      m_ended(std::move(ended)),
      m_bundleKeys(std::move(keys)) {}

UpdateSession::~UpdateSession() {
    *m_giveUp = true;
}

void UpdateSession::skip(const QString& version, UserDefaults& defaults) {
    // Not remembered, it is offered again.
    static_cast<void>(defaults.setString(version, skippedKey));
}

void UpdateSession::start() {
    if (m_askedBy == AskedBy::user)
        m_driver.showUserInitiatedUpdateCheck();
    const auto address = m_delegate.feedURLString();
    SecureFetch::Receiver receiver{
        .data = [this](const QByteArray& bytes) -> Result<void> {
            m_feed += bytes;
            return {};
        },
        .finished = [this](const auto& error) { feedFetched(error); },
    };
    m_fetch = std::make_unique<SecureFetch>(
        m_parts.requests, m_parts.queue, QUrl(address.value_or(QString()), QUrl::StrictMode),
        FetchLimits{m_parts.patience.feed, m_parts.patience.feed, maxFeed}, std::move(receiver));
}

void UpdateSession::feedFetched(const std::optional<FetchError>& error) {
    m_feedScope = m_fetch->scope();
    m_fetch.reset();
    if (error) {
        failed(update_texts::feedNotFetched(*error));
        return;
    }
    const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(
        m_parts.clock.now().time_since_epoch());
    inBackground<tl::expected<GenuineFeed, FeedError>>(
        [feed = std::exchange(m_feed, {}), offlineKey = m_bundleKeys.offlineKey,
         memory = FeedMemory::of(m_bundleKeys, kept(m_parts.defaults, memoryKey)),
         now = QDateTime::fromMSecsSinceEpoch(now.count(), Qt::UTC)] {
            return openFeed(feed, memory, offlineKey, now);
        },
        &UpdateSession::feedOpened);
}

template <class Outcome>
void UpdateSession::inBackground(std::function<Outcome()> work,
                                 void (UpdateSession::*then)(const Outcome&)) {
    m_parts.background.run(
        [&queue = m_parts.queue, self = QPointer<UpdateSession>(this), work, then] {
            queue.async(nullptr, [self, then, outcome = work()] {
                if (self)
                    (*self.*then)(outcome);
            });
        });
}

void UpdateSession::feedOpened(const tl::expected<GenuineFeed, FeedError>& feed) {
    if (!feed) {
        failed(update_texts::feedNotTaken(feed.error()));
        return;
    }
    m_memory = feed->memory;
    // Not remembered, the same is remembered at the next check.
    static_cast<void>(m_parts.defaults.setString(m_memory.text(), memoryKey));
    UpdateWish wish;
    wish.version = m_parts.bundle.infoString(QStringLiteral("CFBundleVersion")).value_or(QString());
    wish.system = thisSystem();
    wish.processor = thisProcessor();
    // Who asks wants to know of a version that was declined, too.
    if (m_askedBy == AskedBy::schedule)
        wish.skippedVersion = kept(m_parts.defaults, skippedKey);
    if (const auto entry = chooseUpdate(feed->appcast.entries, wish))
        found(*entry);
    else
        upToDate();
}

void UpdateSession::found(const AppcastEntry& entry) {
    m_entry = entry;
    const AppcastItem item{entry.shortVersion, entry.version};
    m_delegate.didFindValidUpdate(item);
    m_isShown = true;
    m_driver.showUpdateFound(item, reply(&UpdateSession::answeredDownload));
}

void UpdateSession::answeredDownload(SPUUserUpdateChoice choice) {
    if (choice == SPUUserUpdateChoice::install) {
        download();
        return;
    }
    if (choice == SPUUserUpdateChoice::skip)
        skip(m_entry.version, m_parts.defaults);
    cancelled();
}

void UpdateSession::download() {
    auto copy = InstalledCopy::find(m_parts.programFolder, m_parts.bundle);
    if (!copy) {
        failed(update_texts::copyNotReplaceable(words(copy.error())));
        return;
    }
    m_copy = std::move(*copy);
    auto staging = Staging::makeBeside(m_copy->folder());
    if (!staging) {
        failed(update_texts::noPlace(words(staging.error())));
        return;
    }
    m_staging = std::move(*staging);
    m_archive.setFileName(m_staging->archive());
    if (!m_archive.open(QFile::WriteOnly | QFile::NewOnly | QFile::Unbuffered)) {
        failed(update_texts::noPlace(m_archive.errorString()));
        return;
    }
    m_driver.showDownloadInitiated();
    m_driver.showDownloadDidReceiveExpectedContentLength(m_entry.length);
    SecureFetch::Receiver receiver{
        .data = [this](const QByteArray& bytes) { return store(bytes); },
        .finished = [this](const auto& error) { downloaded(error); },
    };
    const FetchLimits limits{m_parts.patience.download, m_parts.patience.downloadSilence,
                             m_entry.length, m_feedScope};
    m_fetch = std::make_unique<SecureFetch>(m_parts.requests, m_parts.queue, m_entry.url, limits,
                                            std::move(receiver));
}

Result<void> UpdateSession::store(const QByteArray& bytes) {
    // A disk takes what there is room for, and says that it is full at the next attempt.
    for (qint64 done = 0; done < bytes.size();) {
        const qint64 written = m_archive.write(bytes.constData() + done, bytes.size() - done);
        if (written <= 0) {
            const bool isFull = m_archive.error() == QFileDevice::ResourceError;
            return fail((isFull ? update_texts::noRoom() : m_archive.errorString()).toStdString());
        }
        done += written;
    }
    m_received += static_cast<std::uint64_t>(bytes.size());
    m_digest.addData(bytes);
    m_driver.showDownloadDidReceiveDataOfLength(static_cast<std::uint64_t>(bytes.size()));
    return {};
}

void UpdateSession::downloaded(const std::optional<FetchError>& error) {
    m_fetch.reset();
    m_archive.close();
    if (error)
        failed(update_texts::notDownloaded(*error));
    else if (m_received != m_entry.length)
        failed(update_texts::wrongLength());
    else if (m_digest.result() != m_entry.sha256)
        failed(update_texts::wrongDigest());
    else
        unpack();
}

void UpdateSession::unpack() {
    m_driver.showDownloadDidStartExtractingUpdate();
    inBackground<Unpacked>(
        [staging = m_staging, entry = m_entry, keys = m_memory.keys.keys,
         offlineKey = m_bundleKeys.offlineKey, giveUp = m_giveUp]() -> Unpacked {
            if (!archive_signature::verify(staging->archive(), entry.edSignature, keys))
                return {{}, update_texts::wrongSignature()};
            QDir().mkpath(staging->tree());
            if (const auto done = unpackArchive(staging->archive(), staging->tree(), {}, *giveUp);
                !done)
                return {{}, update_texts::notUnpacked(done.error())};
            QFile::remove(staging->archive());
            const auto release = checkRelease(staging->tree(), keys, offlineKey);
            if (!release)
                return {{}, update_texts::notUsable(words(release.error()))};
            if (release->version != entry.version)
                return {{}, update_texts::wrongContents()};
            return {release->folder, std::nullopt};
        },
        &UpdateSession::unpacked);
}

void UpdateSession::unpacked(const Unpacked& outcome) {
    if (outcome.error) {
        failed(*outcome.error);
        return;
    }
    m_tree = outcome.tree;
    m_driver.showReadyToInstallAndRelaunch(reply(&UpdateSession::answeredInstall));
}

void UpdateSession::answeredInstall(SPUUserUpdateChoice choice) {
    if (choice == SPUUserUpdateChoice::install)
        install();
    else
        cancelled();
}

void UpdateSession::install() {
    m_driver.showInstallingUpdate();
    if (const auto kept = m_copy->keepIdentity(*m_staging, m_parts.bundle); !kept) {
        failed(update_texts::copyNotReplaceable(words(kept.error())));
        return;
    }
    const RelaunchPlan plan{m_copy->relauncher(), m_copy->folder(), m_tree, m_staging->folder(),
                            m_entry.version};
    if (const auto started = startRelauncher(plan); !started) {
        failed(update_texts::notInstalled(words(started.error())));
        return;
    }
    // The session stays open: what follows is the relauncher's, once this process is gone.
    m_staging->handOver();
    m_parts.application.terminate();
}

SPUUserDriver::ChoiceReply UpdateSession::reply(Answer answer) {
    return [self = QPointer<UpdateSession>(this), answer](SPUUserUpdateChoice choice) {
        if (self)
            (*self.*answer)(choice);
    };
}

void UpdateSession::upToDate() {
    const UpdaterError error = update_texts::noUpdate();
    m_delegate.didNotFindUpdate();
    const auto end = [self = QPointer<UpdateSession>(this), error] {
        if (self)
            self->finish(error);
    };
    if (m_askedBy == AskedBy::user)
        m_driver.showUpdateNotFound(error, end);
    else
        end();
}

void UpdateSession::failed(const UpdaterError& error) {
    const auto end = [self = QPointer<UpdateSession>(this), error] {
        if (self)
            self->finish(error);
    };
    // A check that nobody asked for fails in silence.
    if (m_askedBy == AskedBy::user || m_isShown)
        m_driver.showUpdaterError(error, end);
    else
        end();
}

void UpdateSession::cancelled() {
    finish(std::nullopt);
}

void UpdateSession::finish(const std::optional<UpdaterError>& error) {
    m_fetch.reset();
    // Thousands of files take longer to go than a frame.
    m_parts.background.run([staging = std::exchange(m_staging, nullptr)] {});
    m_driver.dismissUpdateInstallation();
    if (error)
        m_delegate.didAbortWithError(*error);
    m_delegate.didFinishUpdateCycle(error);
    const auto ended = m_ended;
    ended();
}

} // namespace tamsel
