#include "agent/agent.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

constexpr const char* helpText = "tamsel-agent: runs the commands of combos as the user, for the "
                                 "daemon\n"
                                 "\n"
                                 "  --version  print the version and the build number\n"
                                 "  --help     print this\n"
                                 "\n"
                                 "TAMSEL_DAEMON_ADDRESS: the D-Bus address of the daemon.\n";

int complain(const tamsel::Error& error) {
    std::fprintf(stderr, "tamsel-agent: %s\n", error.description().c_str());
    return EXIT_FAILURE;
}

} // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        const std::string_view word = argv[i];
        if (word != "--help" && word != "--version")
            return complain({"there is no such option (try --help)", argv[i]});
        std::fputs(word == "--help" ? helpText
                                    : "tamsel-agent " TAMSEL_VERSION " (" TAMSEL_BUILD_NUMBER ")\n",
                   stdout);
        return EXIT_SUCCESS;
    }
    const auto run = tamsel::runAgent();
    return run ? EXIT_SUCCESS : complain(run.error());
}
