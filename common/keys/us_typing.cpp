#include "keys/us_typing.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace tamsel {

namespace {

/// The characters of the keys from `first` on, without and with Shift.
struct Run {
    std::uint32_t first;
    std::string_view plain;
    std::string_view shifted;
};

constexpr std::array runs{
    Run{4, "abcdefghijklmnopqrstuvwxyz", "ABCDEFGHIJKLMNOPQRSTUVWXYZ"},
    Run{30, "1234567890", "!@#$%^&*()"},
    Run{40, "\n", ""},
    Run{43, "\t ", ""},
    Run{45, "-=[]\\", "_+{}|"},
    Run{51, ";'`,./", ":\"~<>?"},
};

constexpr auto table = [] {
    std::array<TypedKey, 128> keys{};
    for (const Run& run : runs) {
        for (std::size_t i = 0; i < run.plain.size(); ++i)
            keys[static_cast<unsigned char>(run.plain[i])] = {
                run.first + static_cast<std::uint32_t>(i), ShiftKey::up};
        for (std::size_t i = 0; i < run.shifted.size(); ++i)
            keys[static_cast<unsigned char>(run.shifted[i])] = {
                run.first + static_cast<std::uint32_t>(i), ShiftKey::held};
    }
    return keys;
}();

} // namespace

std::optional<TypedKey> usTyping(char32_t character) {
    if (character >= table.size() || table[character].usage == 0)
        return std::nullopt;
    return table[character];
}

} // namespace tamsel
