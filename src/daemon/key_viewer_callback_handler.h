#pragma once

#include "protocol/daemon_protocol.h"

#include <QObject>

#include <functional>

namespace tamsel {

class Clock;
class Logger;
class MainQueue;
class Pasteboard;
class Workspace;

/// What the handler needs of the machine.
struct CallbackServices {
    MainQueue& queue;
    const Clock& clock;
    Pasteboard& pasteboard;
    Workspace& workspace;
    Logger& logger;
};

/// Serves the daemon's calls on one connection: reports key events to whoever listens, hands over
/// the clipboard's text, and opens URLs before their deadline. The daemon's calls come on the
/// connection's queue; each moves to the main thread, works and answers there.
class KeyViewerCallbackHandler final : public QObject, public TamselAppCallbackProtocol {
    Q_OBJECT

public:
    using EventHandler = std::function<void(const KeyEvent&)>;

    explicit KeyViewerCallbackHandler(CallbackServices services, QObject* parent = nullptr)
        : QObject(parent), m_services(services) {}

    /// Who gets the key events; null drops them. Main thread.
    void setOnEvent(EventHandler onEvent) { m_onEvent = std::move(onEvent); }

    void onKeyEvent(const KeyEvent& event) override;
    void requestClipboardText(ClipboardReply reply) override;
    void openURL(std::string url, double deadline, BoolReply reply) override;

private:
    CallbackServices m_services;
    EventHandler m_onEvent;
};

} // namespace tamsel
