#pragma once

#include "records/records.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace tamsel {

/// One way to hold a trigger, in a form that is compared and hashed without building its text.
struct TriggerSignature {
    std::uint32_t keyCode = 0;
    /// How often each of modifierNames::keys occurs, two bits apiece: a trigger may name a side
    /// and, by the generic name, the same side again.
    std::uint32_t keys = 0;
    std::string others = {}; ///< names that are no modifier's, sorted, joined with ","

    /// "left_command,left_shift|33".
    std::string text() const;

    bool operator==(const TriggerSignature&) const = default;
    struct Hash {
        std::size_t operator()(const TriggerSignature& signature) const noexcept;
    };
};

enum class Walk : std::uint8_t { on, stop };

/// Calls `visit` with each signature of a trigger, in the order of expansion, until it says stop.
/// There are at most sixteen; none for key code 0.
void forEachSignature(const KeyDefinition& trigger,
                      const std::function<Walk(const TriggerSignature&)>& visit);

/// Every way to hold a trigger, as "left_command,left_shift|33": the modifiers in ascending byte
/// order, generic names once with either side, other names as they stand, all in lower case; then
/// the key. In the order of expansion, the first name varying slowest. A name given twice counts
/// once. Key code 0 has none.
std::vector<std::string> triggerSignatures(std::uint32_t keyCode,
                                           std::span<const std::string> modifiers);

} // namespace tamsel
