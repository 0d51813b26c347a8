#pragma once

#include <functional>

namespace tamsel {

/// Whether a device with these keys is a keyboard: it has most of the letters and digits, or a
/// whole keypad; buttons, lids, headsets and remote controls with a few keys are none. Codes:
/// linux/input-event-codes.h.
bool isKeyboard(const std::function<bool(unsigned code)>& hasKey);

} // namespace tamsel
