#include "daemon/options.h"

#include <string_view>

namespace tamsel {

Result<Options> parseOptions(int count, char** words) {
    Options options;
    for (int i = 1; i < count; ++i) {
        const std::string_view word = words[i];
        std::optional<std::string>* folder = nullptr;
        if (word == "--help")
            options.mode = Options::Mode::help;
        else if (word == "--version")
            options.mode = Options::Mode::version;
        else if (word == "--seize-virtual")
            options.virtualDevices = VirtualDevices::seen;
        else if (word == "--simulate")
            folder = &options.simulationFolder;
        else if (word == "--state-dir")
            folder = &options.stateFolder;
        else
            return fail("there is no such option (try --help)", std::string(word));
        if (!folder)
            continue;
        if (++i == count || *words[i] == '\0')
            return fail("a folder must follow", std::string(word));
        *folder = words[i];
    }
    return options;
}

std::string helpText() {
    return "tamsel-daemon: seizes keyboards and rewrites their events\n"
           "\n"
           "  --simulate DIR   take events from the FIFO DIR/in instead of the machine's devices,\n"
           "                   described in DIR/devices.json, and append what comes out to "
           "DIR/out\n"
           "  --state-dir DIR  where the last order is remembered\n"
           "                   (otherwise $XDG_STATE_HOME/tamsel or ~/.local/state/tamsel)\n"
           "  --seize-virtual  take devices that other programs have made for real ones; for "
           "tests\n"
           "  --version        print the version and the build number\n"
           "  --help           print this\n"
           "\n"
           "TAMSEL_DAEMON_ADDRESS: the D-Bus address to listen at.\n";
}

} // namespace tamsel
