#pragma once

#include <cstdint>
#include <string>

namespace tamsel {

/// Where the daemon's own lines go. No line ever holds a key, a device's event or a text of the
/// configuration.
class Log final {
public:
    /// The journal, or standard error on a machine that has none (looked for once, here).
    static Log system();
    /// Always standard error.
    static Log standardError() { return Log(Target::standardError); }

    void info(const std::string& text) const;
    void error(const std::string& text) const;

private:
    enum class Target : std::uint8_t { journal, standardError };
    explicit Log(Target target) : m_target(target) {}

    void write(int priority, const std::string& text) const;

    Target m_target;
};

/// `text` with every quoted part taken out and control characters replaced: an error's reason
/// without the user's own words.
std::string withoutQuotations(const std::string& text);

} // namespace tamsel
