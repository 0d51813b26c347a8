#include "platform/monitor_list.h"

#include <algorithm>

namespace tamsel {

class MonitorList::Monitor final : public LocalEventMonitor {
public:
    Monitor(const std::shared_ptr<Entries>& entries, std::shared_ptr<Entry> entry)
        : m_entries(entries), m_entry(std::move(entry)) {}
    Monitor(const Monitor&) = delete;
    Monitor& operator=(const Monitor&) = delete;
    ~Monitor() override {
        m_entry->removed = true;
        if (const auto entries = m_entries.lock())
            entries->erase(std::remove(entries->begin(), entries->end(), m_entry), entries->end());
    }

private:
    std::weak_ptr<Entries> m_entries;
    std::shared_ptr<Entry> m_entry;
};

std::unique_ptr<LocalEventMonitor> MonitorList::add(LocalKeyKinds mask,
                                                    LocalEvents::Handler handler) {
    auto entry = std::make_shared<Entry>(Entry{mask, std::move(handler)});
    m_entries->insert(m_entries->begin(), entry);
    return std::make_unique<Monitor>(m_entries, std::move(entry));
}

LocalEvents::Verdict MonitorList::ask(const LocalKeyEvent& event) const {
    // A copy, which also keeps a handler alive that removes itself.
    const Entries entries = *m_entries;
    for (const auto& entry : entries) {
        if (!entry->removed && entry->mask.testFlag(event.kind) &&
            entry->handler(event) == LocalEvents::Verdict::swallow)
            return LocalEvents::Verdict::swallow;
    }
    return LocalEvents::Verdict::pass;
}

} // namespace tamsel
