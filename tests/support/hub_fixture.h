#pragma once

#include "logic_fixture.h"

#include "daemon/daemon_event_hub.h"

namespace tamsel {

/// The event hub between a scripted daemon and local events that a test sends.
struct HubFixture : LogicFixture {
    FakeLocalEvents& local = localEvents;
    DaemonEventHub hub{client, local, queue};

    void report(const KeyEvent& event) {
        daemon.current->exported->onKeyEvent(event);
        queue.runPending();
    }
    /// The daemon refuses the next subscriptions, so that the local events stand in.
    void refuse() { daemon.boolReply = false; }
};

} // namespace tamsel
