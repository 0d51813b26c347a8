#pragma once

#include "platform/linux/keys/held_modifiers.h"
#include "platform/monitor_list.h"

#include <QObject>

#include <optional>
#include <set>

class QGuiApplication;
class QKeyEvent;
class QWindow;

namespace tamsel {

/// Local events from an event filter on the application, which sees what its windows are about to
/// get. Monitors are asked once an event: for a press already when the toolkit offers it to
/// shortcuts. A modifier that goes up unseen (the window lost the keyboard) is reported as
/// released, at the latest with the next key. Text that an input method makes of keys does not pass
/// here.
class QtLocalEvents final : public QObject, public LocalEvents {
public:
    /// The application outlives this object.
    explicit QtLocalEvents(QGuiApplication& application);

    std::unique_ptr<LocalEventMonitor> addMonitor(LocalKeyKinds mask, Handler handler) override {
        return m_monitors.add(mask, std::move(handler));
    }

    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    /// The native scan code; of an event without one, its key above all scan codes.
    using KeyId = quint64;
    struct Offered {
        KeyId key;
        quint64 timestamp; ///< the toolkit's
        Verdict verdict;
    };

    Verdict judge(const QWindow& window, const QKeyEvent& event);
    Verdict judgePress(const QWindow& window, const QKeyEvent& event, KeyId key);
    Verdict judgeRelease(const QWindow& window, const QKeyEvent& event, KeyId key);
    Verdict ask(LocalKeyKind kind, std::uint32_t usage, const QWindow& window,
                const QKeyEvent& event) const;
    void reportReleased(const std::vector<std::uint32_t>& modifiers) const;
    void forgetHeldKeys();

    MonitorList m_monitors;
    HeldModifiers m_modifiers;
    std::optional<Offered> m_offered; ///< the press that shortcuts were offered last
    std::set<KeyId> m_swallowed;      ///< held keys whose press was swallowed
};

} // namespace tamsel
