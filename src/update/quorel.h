#pragma once

#include "platform/main_queue.h"
#include "update/quorel_user_driver.h"
#include "update/update_status.h"

#include <QObject>

#include <chrono>

namespace tamsel {

class Bundle;
class Clock;

/// What updates need; all of it outlives the facade. The logs are the update module's own.
struct QuorelServices {
    UpdaterMaker& updaters;
    const Bundle& bundle;
    MainQueue& queue;
    const Clock& clock;
    SystemLog& log;
    SystemLog& driverLog;
};

/// The one way to software updates: starts checks and answers the updater's questions, and makes
/// one status of all that can happen. A check ends after 30 seconds, whatever the updater does.
/// Main thread.
class Quorel final : public QObject, private SPUUpdaterDelegate {
    Q_OBJECT
    Q_PROPERTY(tamsel::UpdateStatus status READ status NOTIFY statusChanged)

public:
    using Date = std::chrono::system_clock::time_point;

    static constexpr std::chrono::milliseconds checkTimeout{30'000};

    explicit Quorel(const QuorelServices& services, QObject* parent = nullptr);
    ~Quorel() override;

    const UpdateStatus& status() const { return m_status; }
    /// Of the update that was found last.
    const std::optional<QString>& availableVersion() const { return m_availableVersion; }
    const std::optional<QString>& availableBuildNumber() const { return m_availableBuildNumber; }
    /// When the last check ended, by any outcome.
    std::optional<Date> lastUpdateCheckDate() const { return m_lastUpdateCheckDate; }

    /// The flag is only logged.
    Q_INVOKABLE void check(bool userInitiated);
    /// Downloads at once what it finds.
    Q_INVOKABLE void checkInBackground();
    Q_INVOKABLE void downloadAndInstall();
    Q_INVOKABLE void installAndRelaunch();
    Q_INVOKABLE void skipVersion(const QString& version);
    Q_INVOKABLE void remindLater();
    Q_INVOKABLE void tryInstallOnDeactivate();

signals:
    /// Emitted at every assignment, also of an equal value.
    void statusChanged();
    void availableVersionChanged();

private:
    std::optional<QString> feedURLString() override;
    void didFindValidUpdate(const AppcastItem& item) override;
    void didNotFindUpdate() override;
    void didAbortWithError(const UpdaterError& error) override;
    void didFinishUpdateCycle(const std::optional<UpdaterError>& error) override;

    void wireDriver();
    bool isBusy() const;
    void startTimeout();
    void timedOut();
    void found(const QString& version, const QString& build);
    /// A check has ended: its time-out is off, its date noted.
    void ended();
    void endedWith(const UpdateStatus& status);
    void setStatus(const UpdateStatus& status);
    void log(const QString& line);

    QuorelServices m_services;
    UpdateStatus m_status;
    std::optional<QString> m_availableVersion;
    std::optional<QString> m_availableBuildNumber;
    std::optional<Date> m_lastUpdateCheckDate;
    QuorelUserDriver m_userDriver;
    TaskHandle m_checkTimeoutTimer;
    std::unique_ptr<SPUUpdater> m_updater; ///< ends first
};

} // namespace tamsel
