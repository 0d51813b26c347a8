#pragma once

#include "config/storage_mgr.h"
#include "daemon/daemon_xpc_client.h"
#include "log/logger.h"
#include "platform/fake/fake_daemon.h"
#include "platform/fake/fake_main_queue.h"
#include "platform/fake/fake_system.h"

#include <gtest/gtest.h>

namespace tamsel {

/// The logic's managers on doubles, wired as the program wires them.
struct LogicFixture : testing::Test {
    using Milliseconds = std::chrono::milliseconds;

    FakeMainQueue queue;
    FakeClock clock{queue};
    FakeSystemLog systemLog;
    FakePasteboard pasteboard;
    FakeWorkspace workspace;
    FakeUserDefaults defaults;
    FakeDaemon daemon{queue};
    Logger logger{systemLog, queue, clock, pasteboard};
    StorageMgr storage{defaults, logger};
    CallbackServices services{queue, clock, pasteboard, workspace, logger};
    DaemonXPCClient client{daemon, storage, services};

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
