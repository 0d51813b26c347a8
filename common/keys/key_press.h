#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tamsel {

// The values of key press actions: key names joined by "+", such as "left_command+a". A value may
// name keys that the catalogue does not know; they are kept as long as nobody recomposes it.

/// The pieces between the plus signs, empty ones dropped. The views are into `value`.
std::vector<std::string_view> keyPressPieces(std::string_view value);

/// The modifiers of a value in its order, each once; generic names stand for the left key.
std::vector<std::string> keyPressModifiers(std::string_view value);

/// The code of the first piece that names a key of the catalogue and may be a main key; 0 when
/// there is none.
std::uint32_t keyPressMainKey(std::string_view value);

/// The value of these modifiers, in their order, and the main key, unless it is 0.
std::string composeKeyPress(std::span<const std::string> modifiers, std::uint32_t mainKey);

/// Whether a code can stand as the main key of a chord: no mouse button, modifier or caps lock.
bool canBeMainKey(std::uint32_t keyCode);

} // namespace tamsel
