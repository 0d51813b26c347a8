#include "update/update_mgr.h"

namespace tamsel {

void UpdateMgr::setCheckStatus(const UpdateStatus& status) {
    if (m_checkStatus == status)
        return;
    m_checkStatus = status;
    Q_EMIT checkStatusChanged();
}

void UpdateMgr::installAndRelaunch() {
    if (m_checkStatus.kind == UpdateStatus::readyToInstall)
        Q_EMIT installRequested();
}

} // namespace tamsel
