#pragma once

#include "config/config_desk.h"
#include "config/storage_mgr.h"
#include "daemon/daemon_xpc_client.h"
#include "log/logger.h"
#include "platform/fake/fake_platform.h"

#include <gtest/gtest.h>

namespace tamsel {

/// A machine of doubles, and what nearly every manager needs on it.
struct LogicFixture : testing::Test, FakePlatform {
    using Milliseconds = std::chrono::milliseconds;

    Logger logger{systemLog, queue, clock, pasteboard};
    StorageMgr storage{defaults, logger};
    CallbackServices callbacks{queue, clock, pasteboard, workspace, logger};
    ConfigDesk desk{storage};
    DaemonXPCClient client{daemon, desk, callbacks};

    QByteArray& stored() { return defaults.values[StorageMgr::configKey]; }
    QStringList takeLog() { return systemLog.take(); }
    void connectClient() {
        client.connect();
        queue.runPending();
        takeLog();
        daemon.takeCalls();
    }
};

} // namespace tamsel
