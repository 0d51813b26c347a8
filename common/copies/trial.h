#pragma once

#include "base/own_folder.h"

#include <optional>
#include <string>

namespace tamsel {

/// Two copies have changed places, and the new one has not shown yet that it works. The note of it
/// lies in the staging folder from before the exchange on, so that whoever comes next can settle
/// what was cut short.
struct Trial {
    std::string tree;      ///< the copy before it, in the staging folder
    std::string version;   ///< that is in place
    bool hasBegun = false; ///< it was started before, and has not come through
};

/// Notes that `tree`, in the staging folder, is about to change places with a copy.
Result<void> noteTrial(const OwnFolder& staging, const std::string& tree,
                       const std::string& version);
/// Of the copy that stands at `copy`. Nothing when the two have not changed places, have changed
/// back, or when the one in place has come through.
std::optional<Trial> trialOf(const OwnFolder& staging, const std::string& copy);
/// The version on trial is about to be started.
Result<void> beginTrial(const OwnFolder& staging);
/// It works. What is left in the staging folder is nobody's any more.
void endTrial(const OwnFolder& staging);

} // namespace tamsel
