#pragma once

#include "base/own_folder.h"

#include <string>

namespace tamsel {

/// "/home/me/.tamsel.update-" for the copy /home/me/tamsel: how the staging folders beside it
/// begin, in which its next version is made ready.
std::string stagingPrefix(const std::string& copy);
/// Where a copy in a staging folder was unpacked.
std::string unpackedIn(const OwnFolder& staging);

/// Two folders change places in one step; on the disk, too, when it returns.
Result<void> exchangeCopies(const std::string& one, const std::string& other);

/// Keeps in the staging folder what the copy says of itself, and tells whether it says so still: a
/// copy that somebody has replaced meanwhile is not ours to overwrite.
Result<void> rememberCopy(const OwnFolder& staging, const std::string& copy);
bool isAsRemembered(const OwnFolder& staging, const std::string& copy);

} // namespace tamsel
