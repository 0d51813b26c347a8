#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

namespace tamsel {

/// What a configuration may take once decoded. A short document can name one object a million
/// times, so the bytes of a document bound nothing; this does, and the encoder counts the same
/// units in the same way, so that whatever is saved can be loaded.
class CodingBudget {
public:
    static constexpr std::size_t limit = std::size_t{64} * 1024 * 1024;
    /// A key that the record doesn't have, which is passed over but takes time.
    static constexpr std::size_t unknownKeyCost = 8;
    static constexpr std::string_view exceeded = "the configuration takes more than 64 MiB";

    /// What one element of a list counts, whatever the list holds besides: 32 for a text (its
    /// characters come on top), 256 for a record.
    template <class Element>
    static constexpr std::size_t elementCost() {
        constexpr std::size_t cost = std::is_same_v<Element, std::string> ? 32 : 256;
        static_assert(sizeof(Element) <= cost);
        return cost;
    }

    /// False when `count` things of `cost` bytes are more than is left.
    [[nodiscard]] bool spend(std::size_t count, std::size_t cost = 1) {
        if (count > m_left / cost)
            return false;
        m_left -= count * cost;
        return true;
    }

private:
    std::size_t m_left = limit;
};

} // namespace tamsel
