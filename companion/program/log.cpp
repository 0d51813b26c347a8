#include "program/log.h"

#include <array>
#include <cstdio>
#include <ctime>
#include <syslog.h>
#include <systemd/sd-journal.h>
#include <unistd.h>

namespace tamsel {

Log Log::system(const char* category) {
    const bool hasJournal = ::access("/run/systemd/journal/socket", W_OK) == 0;
    return {hasJournal ? Target::journal : Target::standardError, category};
}

void Log::info(const std::string& text) const {
    write(LOG_INFO, text);
}

void Log::error(const std::string& text) const {
    write(LOG_ERR, text);
}

void Log::write(int priority, const std::string& text) const {
    if (m_target == Target::journal) {
        ::sd_journal_send("MESSAGE=%s", text.c_str(), "PRIORITY=%d", priority,
                          "SUBSYSTEM=app.tamsel", "CATEGORY=%s", m_category, nullptr);
        return;
    }
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    std::array<char, 16> clock{};
    if (::localtime_r(&now, &local))
        std::strftime(clock.data(), clock.size(), "[%H:%M:%S] ", &local);
    std::fprintf(stderr, "%s%s\n", clock.data(), text.c_str());
}

std::string withoutQuotations(const std::string& text) {
    const std::size_t begin = text.find('"');
    const std::size_t end = text.rfind('"');
    // A text of the user's may hold quotation marks itself: from the first to the last goes.
    std::string out = begin == end ? text.substr(0, begin)
                                   : text.substr(0, begin) + "a value" + text.substr(end + 1);
    for (char& c : out) {
        if (static_cast<unsigned char>(c) < ' ')
            c = ' ';
    }
    return out;
}

} // namespace tamsel
