#pragma once

#include <QObject>

namespace tamsel {

/// Tells when the machine is about to be switched off or the user's session to end. Main thread.
class PowerOffAnnouncer : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

signals:
    /// May come several times, and nothing need follow it.
    void willPowerOff();
};

} // namespace tamsel
