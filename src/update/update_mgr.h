#pragma once

#include "update/update_status.h"

#include <QObject>

namespace tamsel {

/// What the windows see of updates. Whoever looks for them publishes here. Main thread.
class UpdateMgr final : public QObject {
    Q_OBJECT
    Q_PROPERTY(tamsel::UpdateStatus checkStatus READ checkStatus NOTIFY checkStatusChanged)

public:
    using QObject::QObject;

    const UpdateStatus& checkStatus() const { return m_checkStatus; }
    void setCheckStatus(const UpdateStatus& status);

    /// Asks for the installation of what is ready and for a start of the new version.
    void installAndRelaunch();

signals:
    void checkStatusChanged();
    void installRequested();

private:
    UpdateStatus m_checkStatus;
};

} // namespace tamsel
