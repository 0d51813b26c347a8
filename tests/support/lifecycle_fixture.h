#pragma once

#include "platform/fake/fake_platform.h"
#include "program/program.h"

#include <gtest/gtest.h>

namespace tamsel {

/// The whole program on a machine of doubles.
struct LifecycleFixture : testing::Test, FakePlatform {
    using Milliseconds = std::chrono::milliseconds;

    Program program{prepared().parts()};
    Logger& logger = program.logger;
    StorageMgr& storage = program.storage;
    DaemonXPCClient& client = program.daemon;
    DaemonMgr& daemonMgr = program.daemonMgr;
    SystemExtensionMgr& sysExtMgr = program.sysExtMgr;
    LaunchAtLoginMgr& launchAtLogin = program.launchAtLogin;
    Quorel& quorel = program.quorel;
    UpdateMgr& updateMgr = program.updateMgr;
    AppDelegate& delegate = program.delegate;
    int reopens = 0;
    QStringList pages;

    LifecycleFixture() {
        QObject::connect(&notifications, &NotificationCenter::mainWindowReopen,
                         [this] { ++reopens; });
        QObject::connect(&notifications, &NotificationCenter::navigateToPage,
                         [this](const QString& page) { pages << page; });
    }

    QStringList takeLog() { return systemLog.take(); }
    void launch() {
        takeLog();
        delegate.applicationDidFinishLaunching();
        queue.runPending();
    }

private:
    FakePlatform& prepared() {
        bundle.infoStrings["CFBundleVersion"] = "7";
        daemon.version = "7";
        return *this;
    }
};

/// One of several starts within a test.
struct LifecycleRun final : LifecycleFixture {
    void TestBody() override {}
};

} // namespace tamsel
