#pragma once

#include "base/error.h"
#include "records/seen_device.h"

#include <string>
#include <string_view>
#include <vector>

namespace tamsel {

/// The seen-devices list as a JSON array of objects with the eight keys of SeenDeviceInfo, each
/// required. Unknown keys are skipped.
Result<std::vector<SeenDeviceInfo>> decodeSeenDevices(std::string_view json);
std::string encodeSeenDevices(const std::vector<SeenDeviceInfo>& devices);

} // namespace tamsel
