#pragma once

#include "base/bytes.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// The three text encodings that meet in a property list.

namespace tamsel {

bool isAscii(std::string_view text);
bool isAscii(ByteView text);

/// The number of UTF-16 units of a UTF-8 text, or nothing when it is not well-formed: overlong or
/// cut sequences, encoded surrogates and everything above U+10FFFF are refused.
std::optional<std::size_t> utf16Length(std::string_view utf8);

/// Appends the text as big-endian UTF-16. `utf8` must be well-formed.
void appendUtf16(Bytes& out, std::string_view utf8);

/// The UTF-8 text of big-endian UTF-16 bytes, an even number of them; nothing when a surrogate
/// stands alone.
std::optional<std::string> utf8FromUtf16(ByteView utf16);

} // namespace tamsel
