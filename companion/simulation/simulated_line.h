#pragma once

#include "base/error.h"
#include "engine/key_events.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tamsel {

/// What a line of a simulation's input says: an event, or only that time has passed.
struct SimulatedLine {
    engine::EngineTime time{0};
    std::optional<engine::InputEvent> event;

    bool operator==(const SimulatedLine&) const = default;
};

/// Reads "MILLISECONDS DEVICE USAGE down|up" or "MILLISECONDS"; words are divided by blanks,
/// numbers are decimal without a sign. Fails on a time before `earliest`, a device not below
/// `deviceCount` and a usage that is no key. No error repeats the line.
Result<SimulatedLine> parseSimulatedLine(std::string_view line, engine::EngineTime earliest,
                                         std::size_t deviceCount);

/// Cuts a stream of bytes into lines; a line longer than maxLength is thrown away up to its end.
class LineSplitter final {
public:
    static constexpr std::size_t maxLength = 128;

    /// One line without its end, or the fact that it was too long.
    struct Line {
        std::string_view text; ///< valid during the call
        bool isTooLong = false;
    };

    /// Calls `take(Line)` for each line that `bytes` completes.
    template <class Take>
    void feed(std::string_view bytes, Take take) {
        while (!bytes.empty()) {
            const std::size_t end = bytes.find('\n');
            append(bytes.substr(0, end));
            if (end == std::string_view::npos)
                return;
            take(Line{m_pending, m_isTooLong});
            m_pending.clear();
            m_isTooLong = false;
            bytes.remove_prefix(end + 1);
        }
    }

private:
    void append(std::string_view part);

    std::string m_pending;
    bool m_isTooLong = false;
};

} // namespace tamsel
