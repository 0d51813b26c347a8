#include "platform/linux/linux_platform.h"

#include "platform/linux/driver/uinput_driver.h"
#include "platform/linux/driver/unmanaged_driver.h"
#include "platform/linux/updater/feed_updater.h"
#include "platform/linux/updater/packaged_updater.h"

#include <QGuiApplication>

namespace tamsel {

namespace {

/// The driver of a daemon elsewhere is not ours.
std::unique_ptr<SystemExtensionService> makeDriver(const Deployment& deployment,
                                                   const Bundle& bundle, MainQueue& queue,
                                                   BackgroundQueue& background) {
    if (deployment.daemon == Deployment::Daemon::fixed)
        return std::make_unique<UnmanagedDriver>(queue);
    return std::make_unique<UinputDriver>(queue, background, deployment.driver(bundle));
}

/// A copy with a feed replaces itself; the others are their package manager's.
std::unique_ptr<UpdaterMaker> makeUpdaters(const UpdateParts& parts,
                                           const RelaunchOrder& relaunch) {
    if (!parts.bundle.infoString(QStringLiteral("QLFeedURL")))
        return std::make_unique<PackagedUpdaterMaker>();
    return std::make_unique<FeedUpdaterMaker>(parts, relaunch);
}

} // namespace

Result<std::unique_ptr<LinuxPlatform>> LinuxPlatform::open(QGuiApplication& application,
                                                           RelaunchOrder relaunch) {
    auto defaults = SqliteUserDefaults::open(SqliteUserDefaults::standardFile());
    if (!defaults)
        return fail("the settings can't be opened: " + defaults.error().description());
    return std::unique_ptr<LinuxPlatform>(
        new LinuxPlatform(application, std::move(relaunch), std::move(*defaults)));
}

LinuxPlatform::LinuxPlatform(QGuiApplication& application, RelaunchOrder relaunch,
                             std::unique_ptr<SqliteUserDefaults> defaults)
    : m_relaunch(std::move(relaunch)),
      m_deployment(Deployment::here(QCoreApplication::applicationDirPath())),
      m_defaults(std::move(defaults)),
      m_localEvents(application),
      m_application(application, m_tray),
      m_sessionEnd(application),
      m_services(m_deployment.services(m_bundle, QCoreApplication::applicationFilePath()), m_queue),
      m_driver(makeDriver(m_deployment, m_bundle, m_queue, m_background)),
      m_updaters(makeUpdaters({m_bundle, m_queue, m_clock, m_background, *m_defaults, m_application,
                               m_requests, m_deployment.programFolder},
                              m_relaunch)) {
    QGuiApplication::setApplicationVersion(
        m_bundle.infoString(QStringLiteral("CFBundleShortVersionString")).value_or(QString()));
    QObject::connect(&application, &QGuiApplication::applicationStateChanged, &m_notifications,
                     [this](Qt::ApplicationState state) {
                         if (state == Qt::ApplicationActive)
                             Q_EMIT m_notifications.applicationDidBecomeActive();
                     });
}

Platform LinuxPlatform::parts() {
    return {m_queue,
            m_background,
            m_clock,
            m_processes,
            m_bundle,
            *m_defaults,
            m_log,
            m_updateLog,
            m_updateDriverLog,
            m_pasteboard,
            m_workspace,
            m_localEvents,
            m_notifications,
            m_application,
            m_tray,
            m_sessionEnd,
            m_daemon,
            m_services,
            *m_driver,
            m_machine,
            *m_updaters,
            m_http,
            m_defaults->setAside()};
}

int LinuxPlatform::run(ApplicationDelegate& delegate, QWindow& window, SingleInstance& instance,
                       const QStringList& urls) {
    m_application.setMainWindow(&window);
    QObject::connect(&instance, &SingleInstance::openedAgain, &m_application,
                     &QtApplication::openedAgain);
    QObject::connect(&instance, &SingleInstance::quitRequested, &m_application,
                     &QtApplication::terminate);
    return m_application.run(delegate, urls);
}

} // namespace tamsel
