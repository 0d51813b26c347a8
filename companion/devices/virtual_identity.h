#pragma once

#include <cstdint>
#include <string_view>

/// How the devices that Tamsel itself makes are marked, so that it never takes its own output for
/// input: by their physical path ("phys"), which all of them carry.
namespace tamsel::virtual_identity {

inline constexpr const char* keyboardName = "Tamsel Virtual Keyboard";
inline constexpr const char* builtInKeyboardName = "Tamsel Virtual Built-in Keyboard";
inline constexpr const char* pointerName = "Tamsel Virtual Pointer";
inline constexpr std::string_view phys = "tamsel/virtual";
/// No USB vendor's number.
inline constexpr std::uint16_t vendor = 0xFA7A;
inline constexpr std::uint16_t keyboardProduct = 1;
inline constexpr std::uint16_t pointerProduct = 2;
inline constexpr std::uint16_t builtInKeyboardProduct = 3;

} // namespace tamsel::virtual_identity
