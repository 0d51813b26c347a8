#pragma once

#include "platform/main_queue.h"
#include "update/quorel.h"

namespace tamsel {

class Logger;
class UserDefaults;

/// The application's side of updates: mirrors the facade for the windows, checks every four hours,
/// keeps whether it may. Main thread.
class UpdateMgr final : public QObject {
    Q_OBJECT
    Q_PROPERTY(tamsel::UpdateStatus checkStatus READ checkStatus NOTIFY checkStatusChanged)
    Q_PROPERTY(QString availableVer READ availableVer NOTIFY availableVerChanged)
    Q_PROPERTY(QString failedUpdate READ failedUpdate NOTIFY failedUpdateChanged)
    Q_PROPERTY(bool disableAutoCheck READ disableAutoCheck WRITE setDisableAutoCheck NOTIFY
                   disableAutoCheckChanged)

public:
    static constexpr std::chrono::milliseconds checkItv = std::chrono::hours(4);

    /// All of it outlives the manager.
    UpdateMgr(Quorel& quorel, UserDefaults& defaults, MainQueue& queue, const Clock& clock,
              Logger& logger, QObject* parent = nullptr);

    const UpdateStatus& checkStatus() const { return m_checkStatus; }
    /// Empty when none was found.
    const QString& availableVer() const { return m_availableVer; }
    /// When the last check produced a result.
    std::optional<Quorel::Date> lastUpdateCheckDate() const { return m_lastUpdateCheckDate; }
    /// Why the last update is not in place, for the user; empty when it is, or when that was read.
    /// No later check wipes it out.
    const QString& failedUpdate() const { return m_failedUpdate; }
    void failedUpdateRead();
    bool disableAutoCheck() const { return m_disableAutoCheck; }
    void setDisableAutoCheck(bool disable);

signals:
    void checkStatusChanged();
    void availableVerChanged();
    void disableAutoCheckChanged();
    void failedUpdateChanged();
    /// The user should see the button that installs.
    void readyToInstall();

private:
    void mirrorStatus();
    void mirrorVersion();
    void startPeriodicCheck();

    Quorel& m_quorel;
    UserDefaults& m_defaults;
    MainQueue& m_queue;
    const Clock& m_clock;
    UpdateStatus m_checkStatus;
    QString m_availableVer;
    std::optional<Quorel::Date> m_lastUpdateCheckDate;
    QString m_failedUpdate;
    bool m_disableAutoCheck;
    TaskHandle m_autoCheckTimer;
};

} // namespace tamsel
