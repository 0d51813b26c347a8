#pragma once

#include "platform/local_event_monitor.h"

#include <QObject>

#include <functional>
#include <map>
#include <memory>

namespace tamsel {

/// Single keys that a view answers while it is shown: pressed without Command, Control or Option,
/// and not while text input, a menu, a popover or a dialog wants them. A key that is held acts
/// once. Main thread only.
class KeyboardShortcutHandler final : public QObject {
    Q_OBJECT

public:
    using Action = std::function<void()>;
    using Shortcuts = std::map<QChar, Action>; ///< by lower-case character

    KeyboardShortcutHandler(LocalEvents& localEvents, Shortcuts shortcuts,
                            QObject* parent = nullptr);

    /// The view appears.
    Q_INVOKABLE void install();
    /// The view disappears.
    Q_INVOKABLE void remove() { m_keyMonitor.reset(); }

private:
    LocalEvents::Verdict handle(const LocalKeyEvent& event) const;

    LocalEvents& m_localEvents;
    const Shortcuts m_shortcuts;
    std::unique_ptr<LocalEventMonitor> m_keyMonitor;
};

} // namespace tamsel
