#pragma once

#include "platform/local_event_monitor.h"

#include <cstddef>
#include <vector>

namespace tamsel {

/// The installed monitors in their order; what every source of local events hands its events to.
class MonitorList final {
public:
    std::unique_ptr<LocalEventMonitor> add(LocalKeyKinds mask, LocalEvents::Handler handler);

    /// Asks the monitors, the newest first, until one swallows the event.
    LocalEvents::Verdict ask(const LocalKeyEvent& event) const;

    bool isEmpty() const { return m_entries->empty(); }
    std::size_t size() const { return m_entries->size(); }

private:
    struct Entry {
        LocalKeyKinds mask;
        LocalEvents::Handler handler;
        bool removed = false;
    };
    using Entries = std::vector<std::shared_ptr<Entry>>; ///< the newest first
    class Monitor;

    std::shared_ptr<Entries> m_entries = std::make_shared<Entries>();
};

} // namespace tamsel
