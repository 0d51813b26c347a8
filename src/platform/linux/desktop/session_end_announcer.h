#pragma once

#include "platform/power_off_announcer.h"

class QGuiApplication;

namespace tamsel {

/// logind's announcement that the machine goes down, and the session manager's that the session
/// ends.
class SessionEndAnnouncer final : public PowerOffAnnouncer {
    Q_OBJECT

public:
    explicit SessionEndAnnouncer(QGuiApplication& application);

private slots:
    void prepareForShutdown(bool begins);
};

} // namespace tamsel
