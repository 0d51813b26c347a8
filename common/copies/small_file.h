#pragma once

#include "base/error.h"

#include <optional>
#include <string>

namespace tamsel {

/// A regular file of at most 64 KiB, relative to a folder; nothing when it is none. A link is none.
std::optional<std::string> readSmallFile(int folder, const std::string& name);
/// Writes a new file, or another one in its place, in one step; on the disk when it returns.
Result<void> writeSmallFile(int folder, const std::string& name, const std::string& text);

} // namespace tamsel
