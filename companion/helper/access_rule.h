#pragma once

#include "base/error.h"

namespace tamsel::driver {

/// Puts the access rule in place, in one step: a reader sees the old rule or the new one.
Result<void> installAccessRule();

/// Takes the rule away. One that a package has brought is covered by an empty one of the same
/// name, which is how udev's rules are switched off.
Result<void> removeAccessRule();

} // namespace tamsel::driver
