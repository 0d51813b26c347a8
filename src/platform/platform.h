#pragma once

#include <QString>

namespace tamsel {

class Application;
class BackgroundQueue;
class Bundle;
class Clock;
class DaemonConnector;
class HttpClient;
class LocalEvents;
class MachineInspector;
class MainQueue;
class NotificationCenter;
class Pasteboard;
class PowerOffAnnouncer;
class ProcessRunner;
class ServiceManagement;
class StatusBar;
class SystemExtensionService;
class SystemLog;
class UpdaterMaker;
class UserDefaults;
class Workspace;

/// Everything that the program asks of a machine. All of it outlives the program; the real one is
/// LinuxPlatform, its double FakePlatform.
struct Platform {
    MainQueue& queue;
    BackgroundQueue& background;
    const Clock& clock;
    ProcessRunner& processes;
    const Bundle& bundle;
    UserDefaults& defaults;
    SystemLog& log;
    SystemLog& updateLog;       ///< of the update framework
    SystemLog& updateDriverLog; ///< of its user driver
    Pasteboard& pasteboard;
    Workspace& workspace;
    LocalEvents& localEvents;
    NotificationCenter& notifications;
    Application& application;
    StatusBar& statusBar;
    PowerOffAnnouncer& powerOff;
    DaemonConnector& daemon;
    ServiceManagement& services;
    SystemExtensionService& driver;
    MachineInspector& machine;
    UpdaterMaker& updaters;
    HttpClient& http;
    /// Where the stored settings were put that could not be read; empty when they could.
    QString damagedSettings = {};
};

} // namespace tamsel
