#include "daemon/daemon.h"

#include <cstdio>
#include <cstdlib>

namespace {

int complain(const tamsel::Error& error) {
    std::fprintf(stderr, "tamsel-daemon: %s\n", error.description().c_str());
    return EXIT_FAILURE;
}

} // namespace

int main(int argc, char** argv) {
    using tamsel::Options;
    const auto options = tamsel::parseOptions(argc, argv);
    if (!options)
        return complain(options.error());
    if (options->mode == Options::Mode::help) {
        std::fputs(tamsel::helpText().c_str(), stdout);
        return EXIT_SUCCESS;
    }
    if (options->mode == Options::Mode::version) {
        std::puts("tamsel-daemon " TAMSEL_VERSION " (" TAMSEL_BUILD_NUMBER ")");
        return EXIT_SUCCESS;
    }
    const auto run = tamsel::runDaemon(*options);
    return run ? EXIT_SUCCESS : complain(run.error());
}
