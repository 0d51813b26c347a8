#pragma once

#include "devices/device_group.h"
#include "devices/mouse_takeover.h"
#include "platform/main_queue.h"

#include <chrono>
#include <optional>

namespace tamsel {

class ConfigDesk;
class DaemonXPCClient;
class UserDefaults;

/// The devices screen's model: which keyboards the daemon listens to and which mice it takes over.
/// Keyboards are listened to and mice left alone until the user says otherwise. A takeover that is
/// not confirmed within ten seconds is taken back, whatever screen is shown. Main thread.
class DeviceMgrVM final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QList<tamsel::DeviceRow> rows READ rows NOTIFY rowsChanged)
    Q_PROPERTY(bool isConfirmationPending READ isConfirmationPending NOTIFY confirmationChanged)
    Q_PROPERTY(int remainingSeconds READ remainingSeconds NOTIFY confirmationChanged)
    Q_PROPERTY(QString confirmationText READ confirmationText NOTIFY confirmationChanged)

public:
    static constexpr int confirmationSeconds = 10;
    /// The daemon needs a moment until it holds what it was told to.
    static constexpr std::chrono::milliseconds refreshDelay{600};

    /// All of it outlives the model.
    DeviceMgrVM(ConfigDesk& desk, DaemonXPCClient& daemon, MainQueue& queue, UserDefaults& defaults,
                QObject* parent = nullptr);

    /// The daemon's last report.
    const std::vector<SeenDeviceInfo>& devices() const { return m_devices; }
    const std::vector<GrabbedDevice>& excludedKeyboards() const { return m_excludedKeyboards; }
    const std::vector<GrabbedDevice>& mouseDevices() const { return m_mouseDevices; }
    const std::optional<MouseTakeoverConfirmation>& pendingMouseConfirmation() const {
        return m_pendingMouseConfirmation;
    }
    const std::vector<DeviceGroup>& groups() const { return m_groups; }
    const QList<DeviceRow>& rows() const { return m_rows; }

    bool isConfirmationPending() const { return m_pendingMouseConfirmation.has_value(); }
    int remainingSeconds() const;
    /// The banner's text, translated; empty while nothing is pending.
    QString confirmationText() const;

    /// Reads the configuration and asks the daemon; the screen calls it each time it is shown.
    Q_INVOKABLE void reload();
    /// Asks the daemon for its devices.
    Q_INVOKABLE void refresh();

    bool isKeyboardEnabled(const DeviceGroup& group) const;
    bool isMouseEnabled(const DeviceGroup& group) const;
    /// True when anything has changed; nothing is saved.
    bool setKeyboardEnabled(const DeviceGroup& group, bool on);
    void setMouseEnabled(const DeviceGroup& group, bool on);
    /// The switch of the row with this key was moved.
    Q_INVOKABLE void setEnabled(const QString& key, bool on);

    Q_INVOKABLE void confirmMouseTakeover();
    Q_INVOKABLE void cancelMouseTakeover();

signals:
    void rowsChanged();
    void confirmationChanged();

private:
    void showSeen(std::vector<SeenDeviceInfo> devices);
    void excludeNewCombinedDevices();
    bool isPending(const DeviceGroup& group) const;
    void countDown();
    void revertPending();
    void setPending(std::optional<MouseTakeoverConfirmation> pending);
    void save();
    void updateRows();

    ConfigDesk& m_desk;
    DaemonXPCClient& m_daemon;
    MainQueue& m_queue;
    UserDefaults& m_defaults;
    std::vector<SeenDeviceInfo> m_devices;
    std::vector<DeviceGroup> m_groups;
    std::vector<GrabbedDevice> m_excludedKeyboards;
    std::vector<GrabbedDevice> m_mouseDevices;
    std::optional<MouseTakeoverConfirmation> m_pendingMouseConfirmation;
    GrabScope m_legacyScope = GrabScope::all;
    std::vector<GrabbedDevice> m_legacyAllowed;
    TaskHandle m_mouseConfirmationTask;
    QList<DeviceRow> m_rows;
};

} // namespace tamsel
