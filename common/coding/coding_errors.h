#pragma once

#include <string>
#include <string_view>

// The wording that the coders share.

namespace tamsel {

inline constexpr std::string_view missingKey = "the key is missing";

inline std::string wrongKind(std::string_view expected, std::string_view found) {
    return "expected " + std::string(expected) + ", found " + std::string(found);
}

/// A stranger's text as a short quotation that is safe in one line of a log: at most 40 bytes, cut
/// between characters, control characters replaced.
std::string quoted(std::string_view utf8);

} // namespace tamsel
