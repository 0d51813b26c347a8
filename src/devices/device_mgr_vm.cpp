#include "devices/device_mgr_vm.h"

#include "config/config_desk.h"
#include "daemon/daemon_xpc_client.h"
#include "devices/device_list.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace tamsel {

DeviceMgrVM::DeviceMgrVM(ConfigDesk& desk, DaemonXPCClient& daemon, MainQueue& queue,
                         UserDefaults& defaults, QObject* parent)
    : QObject(parent), m_desk(desk), m_daemon(daemon), m_queue(queue), m_defaults(defaults) {}

int DeviceMgrVM::remainingSeconds() const {
    return m_pendingMouseConfirmation ? m_pendingMouseConfirmation->remainingSeconds : 0;
}

QString DeviceMgrVM::confirmationText() const {
    if (!m_pendingMouseConfirmation)
        return {};
    return tr("Mouse takeover is enabled for %1. Confirm within %2 seconds or Tamsel will turn it "
              "off.")
        .arg(shownProduct(m_pendingMouseConfirmation->product),
             QString::number(m_pendingMouseConfirmation->remainingSeconds));
}

void DeviceMgrVM::reload() {
    Cfg cfg = m_desk.load();
    m_excludedKeyboards = std::move(cfg.excludedKeyboards);
    m_mouseDevices = std::move(cfg.mouseDevices);
    m_legacyScope = cfg.grabScope;
    m_legacyAllowed = std::move(cfg.allowedDevices);
    if (m_legacyScope == GrabScope::selected && m_legacyAllowed.empty())
        m_legacyScope = GrabScope::all;
    updateRows();
    refresh();
}

void DeviceMgrVM::refresh() {
    m_daemon.fetchSeenDevices([weak = QPointer(this)](std::vector<SeenDeviceInfo> devices) {
        if (weak)
            weak->showSeen(std::move(devices));
    });
}

void DeviceMgrVM::showSeen(std::vector<SeenDeviceInfo> devices) {
    m_devices = std::move(devices);
    m_groups = deviceGroups(m_devices);
    excludeNewCombinedDevices();
    updateRows();
}

void DeviceMgrVM::excludeNewCombinedDevices() {
    const DeviceSet mice(m_mouseDevices);
    const DeviceSet excluded(m_excludedKeyboards);
    bool isChanged = false;
    for (const DeviceGroup& group : m_groups) {
        const GrabbedDevice device = group.device();
        if (!group.hasKeyboard || !group.hasMouse || mice.contains(device) ||
            excluded.contains(device))
            continue;
        m_excludedKeyboards.push_back(device);
        isChanged = true;
    }
    if (isChanged)
        save();
}

bool DeviceMgrVM::isKeyboardEnabled(const DeviceGroup& group) const {
    if (containsDevice(m_excludedKeyboards, group.device()))
        return false;
    return m_legacyScope == GrabScope::all || containsDevice(m_legacyAllowed, group.device());
}

bool DeviceMgrVM::isMouseEnabled(const DeviceGroup& group) const {
    return containsDevice(m_mouseDevices, group.device());
}

bool DeviceMgrVM::setKeyboardEnabled(const DeviceGroup& group, bool on) {
    if (!on)
        return addDevice(m_excludedKeyboards, group.device());
    bool isChanged = removeDevice(m_excludedKeyboards, group.device());
    if (m_legacyScope == GrabScope::selected)
        isChanged |= addDevice(m_legacyAllowed, group.device());
    return isChanged;
}

void DeviceMgrVM::setMouseEnabled(const DeviceGroup& group, bool on) {
    if (!group.hasMouse) {
        if (setKeyboardEnabled(group, on))
            save();
        return;
    }
    bool isChanged = false;
    if (on) {
        if (!isPending(group))
            cancelMouseTakeover();
        const MouseTakeoverConfirmation confirmation{.vendorID = group.vendorID,
                                                     .productID = group.productID,
                                                     .product = group.product,
                                                     .hasKeyboard = group.hasKeyboard,
                                                     .remainingSeconds = confirmationSeconds};
        notePendingTakeover(m_defaults, confirmation);
        isChanged = addDevice(m_mouseDevices, group.device());
        if (group.hasKeyboard)
            isChanged |= setKeyboardEnabled(group, true);
        if (isChanged)
            save();
        setPending(confirmation);
        m_mouseConfirmationTask = m_queue.after(std::chrono::seconds(1), [this] { countDown(); });
        return;
    }
    const bool wasPending = isPending(group);
    if (wasPending) {
        m_mouseConfirmationTask.cancel();
        setPending(std::nullopt);
    }
    isChanged = removeDevice(m_mouseDevices, group.device());
    if (group.hasKeyboard)
        isChanged |= addDevice(m_excludedKeyboards, group.device());
    if (isChanged)
        save();
    if (wasPending)
        clearPendingTakeover(m_defaults);
}

void DeviceMgrVM::setEnabled(const QString& key, bool on) {
    const auto group = std::find_if(m_groups.begin(), m_groups.end(),
                                    [&key](const DeviceGroup& each) { return each.key() == key; });
    if (group != m_groups.end())
        // A copy: saving may bring new groups.
        setMouseEnabled(DeviceGroup(*group), on);
}

bool DeviceMgrVM::isPending(const DeviceGroup& group) const {
    return m_pendingMouseConfirmation &&
           isSameDevice(m_pendingMouseConfirmation->device(), group.device());
}

void DeviceMgrVM::countDown() {
    if (m_pendingMouseConfirmation->remainingSeconds <= 1) {
        revertPending();
        return;
    }
    auto next = *m_pendingMouseConfirmation;
    --next.remainingSeconds;
    setPending(next);
    m_mouseConfirmationTask = m_queue.after(std::chrono::seconds(1), [this] { countDown(); });
}

void DeviceMgrVM::confirmMouseTakeover() {
    if (!m_pendingMouseConfirmation)
        return;
    m_mouseConfirmationTask.cancel();
    setPending(std::nullopt);
    clearPendingTakeover(m_defaults);
}

void DeviceMgrVM::cancelMouseTakeover() {
    m_mouseConfirmationTask.cancel();
    if (m_pendingMouseConfirmation)
        revertPending();
}

void DeviceMgrVM::revertPending() {
    const MouseTakeoverConfirmation pending = *m_pendingMouseConfirmation;
    setPending(std::nullopt);
    if (revertTakeover(pending, m_mouseDevices, m_excludedKeyboards))
        save();
    clearPendingTakeover(m_defaults);
}

void DeviceMgrVM::setPending(std::optional<MouseTakeoverConfirmation> pending) {
    m_pendingMouseConfirmation = std::move(pending);
    Q_EMIT confirmationChanged();
}

void DeviceMgrVM::save() {
    m_desk.change([this](Cfg& cfg) {
        cfg.excludedKeyboards = m_excludedKeyboards;
        cfg.mouseDevices = m_mouseDevices;
        cfg.grabScope = m_legacyScope;
        cfg.allowedDevices = m_legacyAllowed;
        return true;
    });
    m_queue.after(this, refreshDelay, [this] { refresh(); });
    updateRows();
}

void DeviceMgrVM::updateRows() {
    QList<DeviceRow> rows;
    rows.reserve(qsizetype(m_groups.size()));
    const DeviceSet mice(m_mouseDevices);
    const DeviceSet excluded(m_excludedKeyboards);
    const DeviceSet allowed(m_legacyAllowed);
    for (const DeviceGroup& group : m_groups) {
        const GrabbedDevice device = group.device();
        const bool isListened = !excluded.contains(device) &&
                                (m_legacyScope == GrabScope::all || allowed.contains(device));
        rows.append(deviceRow(group, group.hasMouse ? mice.contains(device) : isListened));
    }
    if (rows == m_rows)
        return;
    m_rows = std::move(rows);
    Q_EMIT rowsChanged();
}

} // namespace tamsel
