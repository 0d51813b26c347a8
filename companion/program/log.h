#pragma once

#include <cstdint>
#include <string>

namespace tamsel {

/// Where a program's own lines go. No line ever holds a key, a device's event or a text of the
/// configuration.
class Log final {
public:
    /// The journal, or standard error on a machine that has none (looked for once, here).
    /// `category` outlives the log.
    static Log system(const char* category);
    /// Always standard error.
    static Log standardError() { return {Target::standardError, ""}; }

    void info(const std::string& text) const;
    void error(const std::string& text) const;

private:
    enum class Target : std::uint8_t { journal, standardError };
    Log(Target target, const char* category) : m_target(target), m_category(category) {}

    void write(int priority, const std::string& text) const;

    Target m_target;
    const char* m_category;
};

/// `text` with every quoted part taken out and control characters replaced: an error's reason
/// without the user's own words.
std::string withoutQuotations(const std::string& text);

} // namespace tamsel
