// The background services as the application sees them, without its window.
// usage: service_probe PROGRAM-FOLDER [systemd|embedded]; without the last word what this machine
// calls for. Obeys lines on standard input: register, unregister, refresh, quit. Standard error
// carries the log lines.

#include "daemon/daemon_mgr.h"
#include "log/logger.h"
#include "platform/linux/deployment.h"
#include "platform/linux/desktop/qt_pasteboard.h"
#include "platform/linux/process/qt_main_queue.h"
#include "platform/linux/process/real_clock.h"
#include "platform/linux/store/journal_system_log.h"

#include <QGuiApplication>
#include <QSocketNotifier>

#include <chrono>
#include <cstdio>
#include <unistd.h>

namespace {

class PrintedLog final : public tamsel::SystemLog {
    bool isEnabled(tamsel::SystemLogType) const override { return true; }
    void write(tamsel::SystemLogType, const QString& line) override {
        std::fprintf(stderr, "%s\n", qUtf8Printable(line));
    }
};

} // namespace

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    if (argc < 2)
        return 2;
    tamsel::QtMainQueue queue;
    const tamsel::RealClock clock;
    tamsel::QtPasteboard pasteboard(queue);
    PrintedLog log;
    tamsel::Logger logger(log, queue, clock, pasteboard);
    auto deployment = tamsel::Deployment::here(QString::fromLocal8Bit(argv[1]));
    const auto bundle = deployment.bundle();
    if (const QByteArray kind = argc > 2 ? argv[2] : ""; !kind.isEmpty())
        deployment.daemon = kind == "systemd" ? tamsel::Deployment::Daemon::systemd
                                              : tamsel::Deployment::Daemon::embedded;
    tamsel::LinuxServiceManagement services(deployment.services(bundle, QStringLiteral("/nowhere")),
                                            queue);
    tamsel::DaemonMgr mgr(services, bundle, logger);

    QByteArray input;
    QSocketNotifier readable(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&readable, &QSocketNotifier::activated, [&] {
        char bytes[256];
        const ssize_t length = ::read(STDIN_FILENO, bytes, sizeof bytes);
        if (length <= 0)
            return QCoreApplication::quit();
        input.append(bytes, length);
        for (qsizetype end = input.indexOf('\n'); end >= 0; end = input.indexOf('\n')) {
            const QByteArray command = input.left(end);
            input.remove(0, end + 1);
            const auto began = std::chrono::steady_clock::now();
            if (command == "register")
                mgr.registerServices();
            else if (command == "unregister")
                mgr.unregisterServices();
            else if (command == "refresh")
                mgr.refreshStatus();
            else if (command == "quit")
                QCoreApplication::quit();
            // No call may wait for anybody.
            if (std::chrono::steady_clock::now() - began > std::chrono::seconds(1))
                std::fprintf(stderr, "BLOCKED in %s\n", command.constData());
        }
    });
    const int status = QCoreApplication::exec();
    services.endOwnPrograms();
    return status;
}
