// A stand-in for the application of a portable copy, with its real start and its real staging:
//   copy_probe                  starts, takes a moment, counts as started, notes that and ends
//   copy_probe update TREE VER  makes TREE ready beside its copy, starts the relauncher and ends
// A file "broken" in its copy lets it end before it counts as started.

#include "copies/exchange.h"
#include "platform/background_queue.h"
#include "platform/linux/updater/installed_copy.h"
#include "platform/linux/updater/program_start.h"

#include <QFile>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <thread>

namespace {

class AtOnce final : public tamsel::BackgroundQueue {
public:
    void run(std::function<void()> task) override { task(); }
    void finish() override {}
};

std::string here() {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path();
}

int update(const std::string& tree, const QString& version) {
    const QString copy = QString::fromStdString(here());
    const auto staging = tamsel::Staging::makeBeside(copy);
    if (!staging)
        return 1;
    const QString ready = (*staging)->tree() + "/next";
    std::filesystem::create_directories((*staging)->tree().toStdString());
    std::filesystem::copy(tree, ready.toStdString(), std::filesystem::copy_options::recursive);
    if (!tamsel::rememberCopy((*staging)->own(), here()) ||
        !tamsel::startRelauncher({copy + "/libexec/tamsel/tamsel-relauncher", copy, ready,
                                  (*staging)->folder(), version}))
        return 1;
    (*staging)->handOver();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    tamsel::ProgramStart start(argc, argv);
    std::signal(SIGPIPE, SIG_IGN);
    if (argc == 4)
        return update(argv[2], argv[3]);
    AtOnce background;
    // As the updater does at its start.
    tamsel::CopyStart::clearLeftovers(here());
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    if (QFile::exists(QString::fromStdString(here() + "/broken")))
        return 3;
    start.expect(background, tamsel::InstalledCopy::versionOf(QString::fromStdString(here())));
    start.frameShown();
    start.daemonCalled();
    std::puts("started");
    return 0;
}
