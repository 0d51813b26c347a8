#pragma once

#include "base/error.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace tamsel {

/// What the feed says of one version.
struct AppcastItem {
    QString displayVersionString; ///< for people, such as "1.4.2"
    QString versionString;        ///< the build, for comparing
};

/// The domain of the updater's own errors, and its code for a feed without a newer version.
inline constexpr QStringView updaterErrorDomain = u"SUSparkleErrorDomain";
inline constexpr int updaterNoUpdateCode = 1001;
/// What a check that got no answer ends with, whoever notices first.
inline constexpr QStringView updaterCheckTimedOut = u"檢查超時，請稍後再試";

/// The user default that keeps why an update is not in place, from the updater's start until the
/// user has read it; empty when there is nothing to tell.
inline const QString failedUpdateKey = QStringLiteral("FailedUpdate");

struct UpdaterError {
    QString domain;
    int code = 0;
    QString localizedDescription;
};

/// The answers to the updater's two questions; the numbers are its own.
enum class SPUUserUpdateChoice : std::uint8_t { skip = 0, install = 1, dismiss = 2 };

/// What the updater may do by itself.
struct SUUpdatePermissionResponse {
    bool automaticUpdateChecks = false;
    bool sendSystemProfile = false;
};

/// Hears what becomes of a check. All calls on the main thread.
class SPUUpdaterDelegate {
public:
    virtual ~SPUUpdaterDelegate() = default;

    /// Where the feed is; without one the updater takes the one it was set up with.
    virtual std::optional<QString> feedURLString() = 0;
    virtual void didFindValidUpdate(const AppcastItem& item) = 0;
    virtual void didNotFindUpdate() = 0;
    virtual void didAbortWithError(const UpdaterError& error) = 0;
    /// The last call of a session.
    virtual void didFinishUpdateCycle(const std::optional<UpdaterError>& error) = 0;
};

/// Stands in for the updater's windows. All calls on the main thread; a reply is answered there, at
/// most once, and an acknowledgement lets the updater go on.
class SPUUserDriver {
public:
    using ChoiceReply = std::function<void(SPUUserUpdateChoice)>;
    using Acknowledgement = std::function<void()>;

    virtual ~SPUUserDriver() = default;

    virtual void
    showUpdatePermissionRequest(const std::function<void(SUUpdatePermissionResponse)>& reply) = 0;
    virtual void showUserInitiatedUpdateCheck() = 0;
    virtual void showUpdateFound(const AppcastItem& item, ChoiceReply reply) = 0;
    virtual void showUpdateNotFound(const UpdaterError& error,
                                    const Acknowledgement& acknowledgement) = 0;
    virtual void showUpdaterError(const UpdaterError& error,
                                  const Acknowledgement& acknowledgement) = 0;
    virtual void showDownloadInitiated() = 0;
    /// In bytes.
    virtual void showDownloadDidReceiveExpectedContentLength(std::uint64_t length) = 0;
    virtual void showDownloadDidReceiveDataOfLength(std::uint64_t length) = 0;
    virtual void showDownloadDidStartExtractingUpdate() = 0;
    virtual void showReadyToInstallAndRelaunch(ChoiceReply reply) = 0;
    virtual void showInstallingUpdate() = 0;
    virtual void showUpdateInstalledAndRelaunched(const Acknowledgement& acknowledgement) = 0;
    /// The session is over, its questions with it.
    virtual void dismissUpdateInstallation() = 0;
};

/// Looks for a newer version of the application, fetches and installs it. Main thread.
class SPUUpdater {
public:
    virtual ~SPUUpdater() = default;

    virtual void setAutomaticallyChecksForUpdates(bool automatically) = 0;
    virtual Result<void> startUpdater() = 0;
    virtual bool sessionInProgress() const = 0;
    virtual bool canCheckForUpdates() const = 0;
    virtual void checkForUpdates() = 0;
    virtual void checkForUpdatesInBackground() = 0;
};

/// Makes the updater of this copy of the application. Main thread.
class UpdaterMaker {
public:
    virtual ~UpdaterMaker() = default;

    /// Never null; `driver` and `delegate` outlive it.
    virtual std::unique_ptr<SPUUpdater> makeUpdater(SPUUserDriver& driver,
                                                    SPUUpdaterDelegate& delegate) = 0;
};

} // namespace tamsel
