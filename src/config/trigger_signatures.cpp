#include "config/trigger_signatures.h"

#include "keys/key_codes.h"
#include "keys/modifier_names.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <vector>

namespace tamsel {

namespace {

using modifierNames::sideDistance;

constexpr unsigned countBits = 2;

constexpr std::uint32_t once(std::size_t key) {
    return std::uint32_t{1} << (countBits * key);
}

std::string lowerCase(std::string name) {
    for (char& letter : name) {
        if (letter >= 'A' && letter <= 'Z')
            letter = static_cast<char>(letter - 'A' + 'a');
    }
    return name;
}

std::string join(std::vector<std::string>& names) {
    std::sort(names.begin(), names.end());
    std::string joined;
    for (const std::string& name : names) {
        if (&name != names.data())
            joined += ',';
        joined += name;
    }
    return joined;
}

/// What the names of a trigger come down to.
struct Names {
    std::uint32_t keys = 0;
    std::array<std::size_t, modifierNames::generic.size()> generic{};
    std::size_t genericCount = 0;
    std::vector<std::string> others;

    void add(const std::string& name) {
        if (const auto index = modifierNames::indexOfGeneric(name)) {
            const auto end = generic.begin() + static_cast<std::ptrdiff_t>(genericCount);
            if (std::find(generic.begin(), end, *index) == end)
                generic[genericCount++] = *index;
        } else if (const auto key = modifierNames::indexOfKey(name)) {
            keys |= once(*key);
        } else if (std::find(others.begin(), others.end(), name) == others.end()) {
            others.push_back(name);
        }
    }
};

} // namespace

std::string TriggerSignature::text() const {
    std::vector<std::string> names;
    for (std::size_t key = 0; key < modifierNames::keys.size(); ++key) {
        for (std::uint32_t count = keys >> (countBits * key) & 3U; count > 0; --count)
            names.emplace_back(modifierNames::keys[key]);
    }
    for (std::size_t begin = 0; begin < others.size();) {
        const std::size_t end = std::min(others.find(',', begin), others.size());
        names.push_back(others.substr(begin, end - begin));
        begin = end + 1;
    }
    return join(names) + "|" + std::to_string(keyCode);
}

std::size_t TriggerSignature::Hash::operator()(const TriggerSignature& signature) const noexcept {
    const std::uint64_t number = std::uint64_t{signature.keyCode} << 32U | signature.keys;
    return std::hash<std::uint64_t>{}(number * 0x9E3779B97F4A7C15U) ^
           (signature.others.empty() ? 0 : std::hash<std::string>{}(signature.others));
}

void forEachSignature(const KeyDefinition& trigger,
                      const std::function<Walk(const TriggerSignature&)>& visit) {
    if (trigger.keyCode == KeyCodes::noKey)
        return;
    Names names;
    for (const std::string& name : trigger.modifiers)
        names.add(lowerCase(name));
    const TriggerSignature shared{trigger.keyCode, names.keys, join(names.others)};
    const std::size_t count = std::size_t{1} << names.genericCount;
    for (std::size_t choice = 0; choice < count; ++choice) {
        TriggerSignature signature = shared;
        for (std::size_t i = 0; i < names.genericCount; ++i) {
            const bool right = (choice >> (names.genericCount - 1 - i) & 1U) != 0;
            signature.keys += once(names.generic[i] + (right ? sideDistance : 0));
        }
        if (visit(signature) == Walk::stop)
            return;
    }
}

std::vector<std::string> triggerSignatures(std::uint32_t keyCode,
                                           std::span<const std::string> modifiers) {
    std::vector<std::string> signatures;
    forEachSignature({keyCode, {modifiers.begin(), modifiers.end()}},
                     [&](const TriggerSignature& signature) {
                         signatures.push_back(signature.text());
                         return Walk::on;
                     });
    return signatures;
}

} // namespace tamsel
