#pragma once

#include "platform/local_event_monitor.h"
#include "platform/main_queue.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <set>

namespace tamsel {

class DaemonEventHub;

/// A recorded key: a code of KeyCodes and the catalogue's names of the modifiers held with it, in
/// the order of their codes.
struct RecordedKey {
    quint32 keyCode = 0;
    QStringList modifiers;

    bool operator==(const RecordedKey&) const = default;
};

/// Records the next key that is pressed: a keyboard key from the application's own windows, where
/// nothing else gets it, or a mouse button that the daemon reports. Escape or ten seconds without a
/// key cancel. One model can serve many record buttons in turn. Main thread only.
class KeyRecorderVM final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isCapturing READ isCapturing NOTIFY isCapturingChanged)
    Q_PROPERTY(bool isDaemonConnected READ isDaemonConnected NOTIFY isDaemonConnectedChanged)
    Q_PROPERTY(bool captureModifiers READ captureModifiers CONSTANT)

public:
    /// Whether modifiers held with the key are recorded.
    enum class Modifiers { ignored, captured };
    using Completion = std::function<void(const RecordedKey&)>;

    static constexpr std::chrono::milliseconds timeout{10'000};

    KeyRecorderVM(DaemonEventHub& hub, LocalEvents& localEvents, MainQueue& queue,
                  Modifiers modifiers, QObject* parent = nullptr);
    ~KeyRecorderVM() override;

    bool isCapturing() const { return m_isCapturing; }
    /// Whether the daemon reports mouse buttons, as last learned.
    bool isDaemonConnected() const { return m_isDaemonConnected; }
    bool captureModifiers() const { return m_modifiers == Modifiers::captured; }

    /// Begins a record; nothing happens while one runs. A cancelled record calls nothing.
    void startCapture(Completion onComplete);
    /// The same for QML: `recorded` tells the result, after isCapturing has become false.
    Q_INVOKABLE void startCapture();
    /// Ends the running record: nothing cancels it, a key is its result.
    void finishCapture(const std::optional<RecordedKey>& result);
    Q_INVOKABLE void cancel() { finishCapture(std::nullopt); }

signals:
    void isCapturingChanged();
    void isDaemonConnectedChanged();
    void recorded(quint32 keyCode, const QStringList& modifiers);

private:
    enum class Motion { up, down };

    void handleLocalEvent(const LocalKeyEvent& event);
    void handleKey(std::uint32_t usage, Motion motion);
    QStringList heldModifierNames() const;
    void joinHub();
    void leaveHub();
    void setDaemonConnected(bool connected);

    DaemonEventHub& m_hub;
    LocalEvents& m_localEvents;
    MainQueue& m_queue;
    const Modifiers m_modifiers;
    bool m_isCapturing = false;
    bool m_isDaemonConnected = false;
    Completion m_onComplete;
    std::optional<QUuid> m_hubToken;
    std::unique_ptr<LocalEventMonitor> m_keyMonitor;
    TaskHandle m_timeoutItem;
    std::set<std::uint32_t> m_heldModifiers;
};

} // namespace tamsel
