#pragma once

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>
#include <QUuid>

#include <optional>

namespace tamsel {

class Clock;
class DaemonEventHub;
struct KeyEvent;

/// One row of the key viewer: a key event and what the daemon did with it.
struct KeyViewerEvent {
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id)
    Q_PROPERTY(QString eventType MEMBER eventType)
    Q_PROPERTY(QString keyName MEMBER keyName)
    Q_PROPERTY(bool keyDown MEMBER keyDown)
    Q_PROPERTY(int action MEMBER action)
    Q_PROPERTY(QString actionName MEMBER actionName)
    Q_PROPERTY(QString outputName MEMBER outputName)
    Q_PROPERTY(bool fromApple MEMBER fromApple)
    Q_PROPERTY(QDateTime timestamp MEMBER timestamp)

public:
    QString id;        ///< a fresh UUID
    QString eventType; ///< "down" or "up"
    QString keyName;   ///< the catalogue's name of the key
    bool keyDown = false;
    int action = 0;     ///< a KeyEventAction
    QString actionName; ///< "passthrough", "suppress", "remap", "media"; empty for another action
    QString outputName; ///< name of the key that was sent, empty when suppressed
    bool fromApple = false;
    QDateTime timestamp; ///< when the event reached the model, UTC

    bool operator==(const KeyViewerEvent&) const = default;
};

/// The key viewer's model: the last key events, the oldest first. Listens from start() to stop().
/// Main thread only.
class KeyViewerVM final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QList<tamsel::KeyViewerEvent> events READ events NOTIFY eventsChanged)
    Q_PROPERTY(bool isDaemonConnected READ isDaemonConnected NOTIFY isDaemonConnectedChanged)

public:
    static constexpr qsizetype maxEvents = 30;

    KeyViewerVM(DaemonEventHub& hub, const Clock& clock, QObject* parent = nullptr);
    ~KeyViewerVM() override;

    const QList<KeyViewerEvent>& events() const { return m_events; }
    /// Whether the events come from the daemon, as last learned.
    bool isDaemonConnected() const { return m_isDaemonConnected; }

    Q_INVOKABLE void start();
    /// Also empties the list.
    Q_INVOKABLE void stop();
    Q_INVOKABLE void clear();

signals:
    void eventsChanged();
    void isDaemonConnectedChanged();

private:
    void append(const KeyEvent& event);
    void setDaemonConnected(bool connected);
    void leaveHub();

    DaemonEventHub& m_hub;
    const Clock& m_clock;
    QList<KeyViewerEvent> m_events;
    bool m_isDaemonConnected = false;
    std::optional<QUuid> m_hubToken;
};

} // namespace tamsel
