#pragma once

#include "base/bytes.h"
#include "base/error.h"
#include "config/records/records.h"
#include "daemon/protocol/daemon_protocol.h"
#include "engine/engine.h"
#include "io/virtual_device.h"
#include "service/order_memory.h"

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace tamsel {

/// The reply of getStatus.
struct Status {
    bool isGrabbing = false;
    bool driverConnected = false;
    std::string_view text; ///< a word of protocol::status

    bool operator==(const Status&) const = default;
};

/// The daemon's decisions: which devices it seizes and when, what it answers. It seizes once it has
/// a configuration, a virtual device and no order to stop; not seizing, it writes nothing.
class Core final {
public:
    /// The longest configuration accepted, in bytes.
    static constexpr std::size_t maxCfgSize = std::size_t{16} * 1024 * 1024;

    /// Called with what goes wrong behind an answer (a state that cannot be saved, an output that
    /// cannot be written); never with a key.
    using Complain = std::function<void(const Error&)>;

    /// `output` is null while the virtual input driver is not connected; it and `memory` outlive
    /// the core. An event's device is an index into `devices`.
    Core(VirtualDevice* output, OrderMemory& memory, std::vector<SeenDeviceInfo> devices,
         Complain complain);

    /// On failure the last good configuration stays. The error may quote the configuration.
    Result<void> updateCfg(ByteView encoded);

    /// Whether the devices are seized now. Refused after the lock-out chord until stopGrabbing;
    /// without a configuration the order is kept for the first one.
    bool startGrabbing();
    /// Releases every device and forgets the lock-out. Always true.
    bool stopGrabbing();

    Status status() const;
    std::vector<SeenDeviceInfo> seenDevices() const;

    /// The next event of a device, in order of time. What a key viewer is to see of it, if
    /// anything.
    std::optional<KeyEvent> handle(const engine::InputEvent& event);

    /// The end: releases every device, whatever comes later; the last order stays remembered.
    void shutDown();

private:
    bool isGrabbing() const;
    void rememberOrder();
    void applySeizure();
    void write(engine::Outputs outputs);

    VirtualDevice* m_output;
    OrderMemory& m_memory;
    std::vector<SeenDeviceInfo> m_devices;
    Complain m_complain;
    engine::Engine m_engine;
    std::optional<Cfg> m_cfg;
    Order m_order;
    Order m_savedOrder;
    bool m_isLockedOut = false;
    bool m_isShutDown = false;
    bool m_outputFailed = false;
};

} // namespace tamsel
