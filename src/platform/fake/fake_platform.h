#pragma once

#include "platform/fake/fake_application.h"
#include "platform/fake/fake_bundle.h"
#include "platform/fake/fake_daemon.h"
#include "platform/fake/fake_http_client.h"
#include "platform/fake/fake_local_events.h"
#include "platform/fake/fake_main_queue.h"
#include "platform/fake/fake_processes.h"
#include "platform/fake/fake_service_management.h"
#include "platform/fake/fake_status_bar.h"
#include "platform/fake/fake_system.h"
#include "platform/fake/fake_system_extension.h"
#include "platform/fake/fake_updater.h"
#include "platform/notification_center.h"
#include "platform/platform.h"
#include "platform/power_off_announcer.h"

namespace tamsel {

/// A whole machine of doubles.
struct FakePlatform {
    FakeMainQueue queue;
    FakeBackgroundQueue background;
    FakeClock clock{queue};
    FakeProcessRunner processes;
    FakeBundle bundle;
    FakeUserDefaults defaults;
    FakeSystemLog systemLog;
    FakeSystemLog updateLog;
    FakePasteboard pasteboard;
    FakeWorkspace workspace;
    FakeLocalEvents localEvents;
    NotificationCenter notifications;
    FakeApplication application;
    FakeStatusBar statusBar;
    PowerOffAnnouncer powerOff;
    FakeDaemon daemon{queue};
    FakeServiceManagement services;
    FakeSystemExtensionService extensions;
    FakeMachine machine;
    FakeUpdater updater;
    FakeHttpClient http;

    Platform parts() {
        return {queue,         background,  clock,     processes,  bundle,    defaults,
                systemLog,     updateLog,   updateLog, pasteboard, workspace, localEvents,
                notifications, application, statusBar, powerOff,   daemon,    services,
                extensions,    machine,     updater,   http};
    }
};

} // namespace tamsel
