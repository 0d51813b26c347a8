#pragma once

#include "platform/local_event_monitor.h"

#include <cstdint>

namespace tamsel {

/// The event's key as a code of KeyCodes. A virtual key code that the catalogue has no usage for
/// stands for itself.
std::uint32_t hidUsage(const LocalKeyEvent& event);

/// Whether the modifier key whose flags have changed is held now; false for a key that is none.
bool modifierIsDown(const LocalKeyEvent& event);

} // namespace tamsel
