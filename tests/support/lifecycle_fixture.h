#pragma once

#include "logic_fixture.h"

#include "app/app_delegate.h"
#include "app/launch_at_login_mgr.h"
#include "daemon/daemon_mgr.h"
#include "driver/system_extension_mgr.h"
#include "platform/fake/fake_application.h"
#include "platform/fake/fake_bundle.h"
#include "platform/fake/fake_local_events.h"
#include "platform/fake/fake_processes.h"
#include "platform/fake/fake_service_management.h"
#include "platform/fake/fake_status_bar.h"
#include "platform/fake/fake_system_extension.h"
#include "platform/fake/fake_updater.h"
#include "platform/notification_center.h"
#include "platform/power_off_announcer.h"
#include "update/update_mgr.h"

namespace tamsel {

/// The lifecycle on doubles.
struct LifecycleFixture : LogicFixture {
    FakeServiceManagement services;
    FakeBundle bundle;
    FakeSystemExtensionService extensions;
    FakeProcessRunner processes;
    FakeBackgroundQueue background;
    FakeApplication application;
    FakeStatusBar statusBar;
    PowerOffAnnouncer powerOff;
    FakeLocalEvents localEvents;
    NotificationCenter notifications;
    FakeSystemLog updateLog;
    FakeUpdater updater;
    Quorel quorel{{updater, bundle, queue, clock, updateLog, updateLog}};
    UpdateMgr updateMgr{quorel, defaults, queue, clock, logger};
    DaemonMgr daemonMgr{services, bundle, logger};
    SystemExtensionMgr sysExtMgr{{extensions, processes, background, queue, logger}, client};
    LaunchAtLoginMgr launchAtLogin{services, defaults, logger};
    AppDelegate delegate{{application, statusBar, powerOff, localEvents, notifications, defaults,
                          bundle, queue, logger, storage, client, daemonMgr, sysExtMgr,
                          launchAtLogin, updateMgr}};
    int reopens = 0;
    QStringList pages;

    LifecycleFixture() {
        bundle.infoStrings["CFBundleVersion"] = "7";
        daemon.version = "7";
        QObject::connect(&notifications, &NotificationCenter::mainWindowReopen,
                         [this] { ++reopens; });
        QObject::connect(&notifications, &NotificationCenter::navigateToPage,
                         [this](const QString& page) { pages << page; });
    }

    void launch() {
        takeLog();
        delegate.applicationDidFinishLaunching();
        queue.runPending();
    }
};

/// One of several starts within a test.
struct LifecycleRun final : LifecycleFixture {
    void TestBody() override {}
};

} // namespace tamsel
