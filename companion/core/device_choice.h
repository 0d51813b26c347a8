#pragma once

#include "records/records.h"
#include "records/seen_device.h"

namespace tamsel {

/// Whether the configuration lets the daemon take a device: every keyboard that is not excluded (of
/// a selection that names any, those that it names), and the pointing devices that are named. A
/// device is the same when vendor and product id are; its name takes no part.
bool isChosen(const Cfg& cfg, const SeenDeviceInfo& device);

/// Whether Apple made the device, by its USB or Bluetooth vendor id.
bool isAppleMade(const SeenDeviceInfo& device);

} // namespace tamsel
