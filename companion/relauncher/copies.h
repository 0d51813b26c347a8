#pragma once

#include "base/error.h"
#include "base/unique_fd.h"

#include <string>

namespace tamsel {

/// Two folders change places in one step; on the disk, too, when it returns.
Result<void> exchange(const std::string& one, const std::string& other);

/// Held, it tells the copy beside which the folder stands that somebody works in it.
UniqueFd lockFolder(const std::string& folder);

} // namespace tamsel
