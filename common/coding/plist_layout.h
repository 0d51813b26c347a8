#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// The parts of a binary property list: magic, objects, a table of their offsets, a trailer. An
// object is a marker byte (type in the upper half, a size or count in the lower one) and its
// payload. Numbers are big-endian; containers hold references, which are indices into the table.

namespace tamsel::plist {

inline constexpr std::string_view magic = "bplist00";

enum MarkerType : std::uint8_t {
    simple = 0x00,
    integer = 0x10,
    real = 0x20,
    date = 0x30,
    data = 0x40,
    asciiText = 0x50,
    utf16Text = 0x60,
    uid = 0x80,
    array = 0xA0,
    set = 0xC0,
    dictionary = 0xD0,
};

inline constexpr std::uint8_t markerNull = 0x00;
inline constexpr std::uint8_t markerFalse = 0x08;
inline constexpr std::uint8_t markerTrue = 0x09;
/// A count of 15 in a marker: an integer object with the count follows.
inline constexpr std::uint8_t countFollows = 0x0F;

/// The trailer, and the positions of its fields; the last three are eight bytes wide.
inline constexpr std::size_t trailerSize = 32;
inline constexpr std::size_t trailerOffsetSize = 6;
inline constexpr std::size_t trailerReferenceSize = 7;
inline constexpr std::size_t trailerObjectCount = 8;
inline constexpr std::size_t trailerRoot = 16;
inline constexpr std::size_t trailerOffsetTable = 24;

} // namespace tamsel::plist
