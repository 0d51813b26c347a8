#pragma once

#include "base/error.h"

#include <string>

namespace tamsel {

/// Makes the folder and those above it where missing, each 0700; one that is there stays as it is.
Result<void> makePrivateFolders(const std::string& path);

} // namespace tamsel
