#include "keys/modifier_names.h"

#include <algorithm>

namespace tamsel::modifierNames {

namespace {

template <std::size_t N>
std::optional<std::size_t> indexOf(const std::array<std::string_view, N>& names,
                                   std::string_view name) {
    const auto* const found = std::find(names.begin(), names.end(), name);
    if (found == names.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - names.begin());
}

} // namespace

std::optional<std::size_t> indexOfKey(std::string_view name) {
    return indexOf(keys, name);
}

std::optional<std::size_t> indexOfGeneric(std::string_view name) {
    return indexOf(generic, name);
}

} // namespace tamsel::modifierNames
