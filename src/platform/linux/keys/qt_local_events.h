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
/// shortcuts. A press that was swallowed takes its repetitions and its release along, also when the
/// monitor is gone by then. A modifier that goes up unseen (the window lost the keyboard) is
/// reported as released, at the latest with the next key. Text that an input method makes of keys
/// does not pass here.
///
/// On X11 a repetition is a release and a press of the same moment, which the toolkit recognises
/// only when both have arrived when it looks. What it took for a press is passed on as what it is.
class QtLocalEvents final : public QObject, public LocalEvents {
public:
    /// The application outlives this object.
    explicit QtLocalEvents(QGuiApplication& application);

    std::unique_ptr<LocalEventMonitor> addMonitor(LocalKeyKinds mask, Handler handler) override {
        return m_monitors.add(mask, std::move(handler));
    }

    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    using KeyId = quint64;
    struct Offered {
        KeyId key;
        quint64 timestamp; ///< the toolkit's
        Verdict verdict;
    };

    struct Released {
        KeyId key = 0;
        quint64 timestamp = 0; ///< 0: the toolkit knows none
        bool wasSwallowed = false;
    };

    bool isMistakenForPress(const QKeyEvent& event);
    Verdict judge(const QWindow& window, const QKeyEvent& event);
    Verdict judgePress(const QWindow& window, const QKeyEvent& event);
    Verdict judgeRelease(const QWindow& window, const QKeyEvent& event, KeyId key);
    Verdict ask(LocalKeyKind kind, std::uint32_t usage, const QWindow& window,
                const QKeyEvent& event) const;
    void reportReleased(const std::vector<std::uint32_t>& modifiers) const;
    void forgetHeldKeys();

    MonitorList m_monitors;
    HeldModifiers m_modifiers;
    std::optional<Offered> m_offered; ///< the press that shortcuts were offered last
    Released m_released;              ///< the last key that went up
    std::set<KeyId> m_swallowed;      ///< held keys whose press was swallowed, as far as known
};

} // namespace tamsel
