#pragma once

#include "app/app_delegate.h"
#include "app/launch_at_login_mgr.h"
#include "config/config_desk.h"
#include "config/storage_mgr.h"
#include "daemon/daemon_event_hub.h"
#include "daemon/daemon_mgr.h"
#include "daemon/daemon_xpc_client.h"
#include "driver/system_extension_mgr.h"
#include "feedback/ticket_api.h"
#include "log/logger.h"
#include "platform/platform.h"
#include "program/screens.h"
#include "update/quorel.h"
#include "update/update_mgr.h"

namespace tamsel {

/// The managers in the order in which they need each other, and the models of the screens; all of
/// it ends in reverse. Main thread.
struct Program final {
    explicit Program(Platform machine);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// Background work may log to its very end, so it ends before the logger.
    struct BackgroundWork {
        BackgroundQueue& queue;
        ~BackgroundWork();
    };
    /// What an earlier run has left pending is taken back before anybody reads the configuration.
    struct Recovery {
        Recovery(StorageMgr& storage, const Platform& platform);
    };

    const Platform platform;
    Logger logger{platform.log, platform.queue, platform.clock, platform.pasteboard};
    BackgroundWork backgroundWork{platform.background};
    StorageMgr storage{platform.defaults, logger};
    Recovery recovery{storage, platform};
    ConfigDesk desk{storage};
    DaemonXPCClient daemon{
        platform.daemon,
        desk,
        {platform.queue, platform.clock, platform.pasteboard, platform.workspace, logger}};
    DaemonEventHub eventHub{daemon, platform.localEvents, platform.queue};
    DaemonMgr daemonMgr{platform.services, platform.bundle, logger};
    SystemExtensionMgr sysExtMgr{
        {platform.driver, platform.processes, platform.background, platform.queue, logger}, daemon};
    LaunchAtLoginMgr launchAtLogin{platform.services, platform.defaults, logger};
    Quorel quorel{{platform.updaters, platform.bundle, platform.queue, platform.clock,
                   platform.updateLog, platform.updateDriverLog}};
    UpdateMgr updateMgr{quorel, platform.defaults, platform.queue, platform.clock, logger};
    TicketAPI tickets{TicketOrigin::of(platform.bundle), platform.http, platform.defaults,
                      platform.queue, logger};
    AppDelegate delegate{{platform.application, platform.statusBar, platform.powerOff,
                          platform.localEvents, platform.notifications, platform.defaults,
                          platform.bundle, platform.queue, logger, daemon, daemonMgr, sysExtMgr,
                          launchAtLogin, updateMgr}};
    Screens screens{*this};
};

} // namespace tamsel
