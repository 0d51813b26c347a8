#include "simulation/simulated_line.h"

#include "engine/usage_slots.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace tamsel {

namespace {

/// Enough for 300 million years, and far from where a duration overflows.
constexpr std::int64_t latestTime = 9'999'999'999'999'999;

std::string_view nextWord(std::string_view& rest) {
    constexpr std::string_view blanks = " \t";
    const std::size_t begin = rest.find_first_not_of(blanks);
    if (begin == std::string_view::npos) {
        rest = {};
        return {};
    }
    const std::size_t end = std::min(rest.find_first_of(blanks, begin), rest.size());
    const std::string_view word = rest.substr(begin, end - begin);
    rest.remove_prefix(end);
    return word;
}

template <class Number>
std::optional<Number> number(std::string_view word) {
    Number value{};
    const char* const end = word.data() + word.size();
    if (word.empty() || word.front() < '0' || word.front() > '9')
        return std::nullopt;
    const auto [stop, error] = std::from_chars(word.data(), end, value);
    return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

} // namespace

Result<SimulatedLine> parseSimulatedLine(std::string_view line, engine::EngineTime earliest,
                                         std::size_t deviceCount) {
    std::string_view rest = line;
    const auto time = number<std::int64_t>(nextWord(rest));
    if (!time || *time > latestTime)
        return fail("the time is not a number of milliseconds");
    SimulatedLine parsed{engine::EngineTime(*time), std::nullopt};
    if (parsed.time < earliest)
        return fail("the time goes backwards");
    const std::string_view deviceWord = nextWord(rest);
    if (deviceWord.empty())
        return parsed;
    const auto device = number<std::uint32_t>(deviceWord);
    if (!device || *device >= deviceCount)
        return fail("there is no such device");
    const auto usage = number<std::uint32_t>(nextWord(rest));
    if (!usage || engine::slotOf(*usage) == engine::noSlot)
        return fail("the usage is no key");
    const std::string_view edge = nextWord(rest);
    if (edge != "down" && edge != "up")
        return fail("the event is neither down nor up");
    if (!nextWord(rest).empty())
        return fail("there are words after the event");
    parsed.event = engine::InputEvent{parsed.time, *device, *usage,
                                      edge == "down" ? engine::Edge::down : engine::Edge::up};
    return parsed;
}

void LineSplitter::append(std::string_view part) {
    if (m_pending.size() + part.size() > maxLength) {
        m_isTooLong = true;
        m_pending.clear();
    }
    if (!m_isTooLong)
        m_pending.append(part);
}

} // namespace tamsel
