#pragma once

#include "platform/monitor_list.h"

namespace tamsel {

/// Local events that a test sends.
class FakeLocalEvents final : public LocalEvents {
public:
    std::unique_ptr<LocalEventMonitor> addMonitor(LocalKeyKinds mask, Handler handler) override {
        return m_monitors.add(mask, std::move(handler));
    }

    std::size_t installed() const { return m_monitors.size(); }

    /// True when a monitor swallowed the event.
    bool send(const LocalKeyEvent& event) { return m_monitors.ask(event) == Verdict::swallow; }
    bool keyDown(std::uint16_t virtualKey) { return send({LocalKeyKind::keyDown, {}, virtualKey}); }
    bool keyUp(std::uint16_t virtualKey) { return send({LocalKeyKind::keyUp, {}, virtualKey}); }
    bool flagsChanged(std::uint16_t virtualKey, std::uint32_t flags) {
        return send({LocalKeyKind::flagsChanged, {}, virtualKey, flags});
    }

private:
    MonitorList m_monitors;
};

} // namespace tamsel
