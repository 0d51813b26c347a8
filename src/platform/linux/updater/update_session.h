#pragma once

#include "platform/linux/updater/installed_copy.h"
#include "platform/linux/updater/secure_fetch.h"
#include "platform/linux/updater/signed_feed.h"
#include "platform/software_updater.h"

#include <QCryptographicHash>
#include <QFile>
#include <QObject>

#include <atomic>
#include <chrono>
#include <memory>

namespace tamsel {

class Application;
class BackgroundQueue;
class Bundle;
class Clock;
class MainQueue;
class SecureRequests;
class UserDefaults;

/// How long an update may take. The feed's deadline comes soon after the time that a user waits
/// for a check, so that no later check is refused for long.
struct UpdatePatience {
    std::chrono::milliseconds feed{31'000};
    std::chrono::milliseconds downloadSilence{30'000};
    std::chrono::milliseconds download = std::chrono::hours(1);
};

/// What a session works with; all of it outlives the session.
struct UpdateParts {
    const Bundle& bundle;
    MainQueue& queue;
    const Clock& clock;
    BackgroundQueue& background;
    UserDefaults& defaults;
    Application& application;
    SecureRequests& requests;
    QString programFolder;
    UpdatePatience patience = {};
};

/// One check and, if the user wants it, the download and installation of what it found. Main
/// thread; destroying it ends it without a word.
class UpdateSession final : public QObject {
public:
    enum class AskedBy { user, schedule };

    /// `ended` is the last that is heard of it; it may destroy the session.
    UpdateSession(UpdateParts parts, BundleKeys keys, AskedBy askedBy, SPUUserDriver& driver,
                  SPUUpdaterDelegate& delegate, std::function<void()> ended);
    ~UpdateSession() override;

    void start();

    /// No check that nobody asked for offers this version any more.
    static void skip(const QString& version, UserDefaults& defaults);

private:
    using Answer = void (UpdateSession::*)(SPUUserUpdateChoice);
    struct Unpacked;

    void feedFetched(const std::optional<FetchError>& error);
    void feedOpened(const tl::expected<GenuineFeed, FeedError>& feed);
    void found(const AppcastEntry& entry);
    void answeredDownload(SPUUserUpdateChoice choice);
    void download();
    Result<void> store(const QByteArray& bytes);
    void downloaded(const std::optional<FetchError>& error);
    void unpack();
    void unpacked(const Unpacked& outcome);
    void answeredInstall(SPUUserUpdateChoice choice);
    void install();
    /// Runs work that ends in `then`, unless this session has ended before.
    template <class Outcome>
    void inBackground(std::function<Outcome()> work, void (UpdateSession::*then)(const Outcome&));

    SPUUserDriver::ChoiceReply reply(Answer answer);
    /// The ends of a session: nothing newer, an error, the user's wish.
    void upToDate();
    void failed(const UpdaterError& error);
    void cancelled();
    void finish(const std::optional<UpdaterError>& error);

    UpdateParts m_parts;
    const AskedBy m_askedBy;
    SPUUserDriver& m_driver;
    SPUUpdaterDelegate& m_delegate;
    std::function<void()> m_ended;
    BundleKeys m_bundleKeys;
    QByteArray m_feed;
    FeedMemory m_memory;
    AddressScope m_feedScope = AddressScope::internet;
    AppcastEntry m_entry;
    bool m_isShown = false; ///< the user knows of an update
    std::optional<InstalledCopy> m_copy;
    std::shared_ptr<Staging> m_staging; ///< the work in the background holds it, too
    QFile m_archive;
    std::uint64_t m_received = 0;
    QCryptographicHash m_digest{QCryptographicHash::Sha256};
    QString m_tree;
    std::shared_ptr<std::atomic<bool>> m_giveUp = std::make_shared<std::atomic<bool>>(false);
    std::unique_ptr<SecureFetch> m_fetch;
};

} // namespace tamsel
