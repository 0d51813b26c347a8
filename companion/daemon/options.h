#pragma once

#include "base/error.h"
#include "devices/device_nodes.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tamsel {

/// What the command line asks for.
struct Options {
    enum class Mode : std::uint8_t { run, help, version };

    Mode mode = Mode::run;
    std::optional<std::string> simulationFolder;
    std::optional<std::string> stateFolder;
    VirtualDevices virtualDevices = VirtualDevices::ignored;
};

Result<Options> parseOptions(int count, char** words);

std::string helpText();

} // namespace tamsel
