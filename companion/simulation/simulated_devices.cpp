#include "simulation/simulated_devices.h"

#include "coding/seen_devices_coding.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tamsel {

namespace {

constexpr std::size_t maxDevices = 256;
constexpr std::size_t maxDevicesFile = std::size_t{1024} * 1024;

std::string reason(int error) {
    return std::generic_category().message(error);
}

Result<std::string> readSmallFile(const std::string& path) {
    const UniqueFd file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.isOpen())
        return fail("cannot be opened: " + reason(errno), path);
    struct stat info {};
    if (::fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode))
        return fail("is not a file", path);
    std::string text;
    std::array<char, 4096> buffer{};
    for (;;) {
        const ssize_t count = ::read(file.get(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return fail("cannot be read: " + reason(errno), path);
        if (count == 0)
            return text;
        text.append(buffer.data(), static_cast<std::size_t>(count));
        if (text.size() > maxDevicesFile)
            return fail("is too long", path);
    }
}

/// Open for reading and writing: with a writer of its own the FIFO never ends, whoever leaves.
Result<UniqueFd> openFifo(const std::string& path) {
    if (::mkfifo(path.c_str(), 0600) != 0 && errno != EEXIST)
        return fail("cannot be made: " + reason(errno), path);
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0 || !S_ISFIFO(info.st_mode))
        return fail("is not a FIFO", path);
    UniqueFd fifo(::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    if (!fifo.isOpen())
        return fail("cannot be opened: " + reason(errno), path);
    return fifo;
}

} // namespace

Result<SimulatedOutput> SimulatedOutput::open(const std::string& folder) {
    const std::string path = folder + "/out";
    UniqueFd file(::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
    if (!file.isOpen())
        return fail("cannot be opened: " + reason(errno), path);
    return SimulatedOutput(std::move(file));
}

Result<void> SimulatedOutput::write(std::span<const engine::OutputEvent> events) {
    m_text.clear();
    for (const engine::OutputEvent& event : events) {
        m_text += std::to_string(event.usage);
        m_text += event.edge == engine::Edge::down ? " down\n" : " up\n";
    }
    return append(m_text);
}

Result<void> SimulatedOutput::record(const ShortcutAction& action) {
    constexpr bool asciiOnly = true;
    const std::string value =
        nlohmann::json(action.value)
            .dump(-1, ' ', asciiOnly, nlohmann::json::error_handler_t::replace);
    return append("action " + std::string(name(action.type)) + " " + value + "\n");
}

Result<void> SimulatedOutput::append(std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::write(m_file.get(), text.data(), text.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return fail("the output cannot be written: " + reason(errno));
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return {};
}

Result<SimulatedDevices> SimulatedDevices::open(const std::string& folder) {
    const std::string path = folder + "/devices.json";
    const auto json = readSmallFile(path);
    if (!json)
        return tl::unexpected(json.error());
    auto devices = decodeSeenDevices(*json);
    if (!devices)
        return fail(devices.error().description(), path);
    if (devices->size() > maxDevices)
        return fail("names more than " + std::to_string(maxDevices) + " devices", path);
    auto fifo = openFifo(folder + "/in");
    if (!fifo)
        return tl::unexpected(fifo.error());
    return SimulatedDevices(std::move(*fifo), std::move(*devices));
}

Result<void> SimulatedDevices::read(const std::function<void(const SimulatedLine&)>& take,
                                    const std::function<void(const Error&)>& complain) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): read() fills it
    std::array<char, 16384> buffer;
    const ssize_t count = ::read(m_in.get(), buffer.data(), buffer.size());
    if (count < 0 && (errno == EAGAIN || errno == EINTR))
        return {};
    if (count < 0)
        return fail("the input cannot be read: " + reason(errno));
    const std::string_view bytes(buffer.data(), static_cast<std::size_t>(count));
    m_splitter.feed(bytes, [&](const LineSplitter::Line& line) {
        ++m_lineNumber;
        const auto bad = [&](const std::string& why) {
            complain({why, "line " + std::to_string(m_lineNumber)});
        };
        if (line.isTooLong)
            return bad("is too long");
        const auto parsed = parseSimulatedLine(line.text, m_now, m_devices.size());
        if (!parsed)
            return bad(parsed.error().what);
        m_now = parsed->time;
        take(*parsed);
    });
    return {};
}

} // namespace tamsel
