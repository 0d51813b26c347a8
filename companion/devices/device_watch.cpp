#include "devices/device_watch.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <string_view>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tamsel {

namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t nodeChanges =
    IN_CREATE | IN_DELETE | IN_ATTRIB | IN_MOVED_FROM | IN_MOVED_TO;
constexpr mode_t reading = 4;
constexpr mode_t readingAndWriting = 6;
constexpr mode_t readingAndSearching = 5;

std::string reason(int error) {
    return std::generic_category().message(error);
}

std::string folderOf(const std::string& path) {
    return fs::path(path).parent_path().string();
}

std::string nameOf(const std::string& path) {
    return fs::path(path).filename().string();
}

/// "event" and a number.
bool isEventNode(std::string_view name) {
    constexpr std::string_view prefix = "event";
    constexpr std::size_t longest = 16;
    if (!name.starts_with(prefix) || name.size() == prefix.size() || name.size() > longest)
        return false;
    return name.find_first_not_of("0123456789", prefix.size()) == std::string_view::npos;
}

bool isRefusal(int error) {
    return error == EACCES || error == EPERM;
}

/// What an unplugged device or a node that nothing stands behind gives.
bool isAbsence(int error) {
    return error == ENOENT || error == ENODEV || error == ENXIO;
}

} // namespace

DeviceWatch::DeviceWatch(Places places, const DeviceNodes& nodes, DeviceSink& sink)
    : m_places(std::move(places)), m_nodes(nodes), m_sink(sink) {}

Result<void> DeviceWatch::start() {
    m_inotify = UniqueFd(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    if (!m_inotify.isOpen())
        return fail("devices cannot be watched: " + reason(errno));
    for (const std::string& folder :
         {folderOf(m_places.inputFolder), folderOf(m_places.uinputNode)}) {
        if (::inotify_add_watch(m_inotify.get(), folder.c_str(), nodeChanges) < 0)
            return fail("cannot be watched: " + reason(errno), folder);
    }
    lookAtEverything();
    report();
    return {};
}

void DeviceWatch::read() {
    alignas(inotify_event) std::array<char, 16384> buffer{};
    const ssize_t count = ::read(m_inotify.get(), buffer.data(), buffer.size());
    News news;
    for (ssize_t at = 0; at < count;) {
        // The kernel pads the names, so that each event is aligned.
        const auto& event = *reinterpret_cast<const inotify_event*>(buffer.data() + at);
        take(event, news);
        at += static_cast<ssize_t>(sizeof event + event.len);
    }
    if (news.isEverything) {
        lookAtEverything();
    } else {
        for (const std::string& name : news.names)
            lookAt(name);
    }
    if (news.isEverything || news.isDriver || !news.names.empty())
        report();
}

void DeviceWatch::take(const inotify_event& event, News& news) {
    const std::string name = event.len > 0 ? event.name : "";
    if ((event.mask & IN_Q_OVERFLOW) != 0) {
        news.isEverything = true;
    } else if (event.wd == m_inputWatch) {
        if ((event.mask & IN_IGNORED) != 0)
            news.isEverything = true;
        else if (isEventNode(name))
            news.names.insert(name);
    } else {
        news.isEverything |= name == nameOf(m_places.inputFolder);
        news.isDriver |= name == nameOf(m_places.uinputNode);
    }
}

void DeviceWatch::watchInputFolder() {
    const int watch = ::inotify_add_watch(m_inotify.get(), m_places.inputFolder.c_str(),
                                          nodeChanges | IN_ONLYDIR);
    if (watch < 0 && errno != ENOENT && errno != EACCES)
        m_sink.complain({"cannot be watched: " + reason(errno), m_places.inputFolder});
    // A folder that was moved away or replaced would still be watched.
    if (m_inputWatch >= 0 && m_inputWatch != watch)
        ::inotify_rm_watch(m_inotify.get(), m_inputWatch);
    m_inputWatch = watch;
}

void DeviceWatch::lookAtEverything() {
    watchInputFolder();
    std::set<std::string> names;
    for (const auto& [name, node] : m_known)
        names.insert(name);
    std::error_code error;
    fs::directory_iterator entry(m_places.inputFolder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        if (std::string name = entry->path().filename().string(); isEventNode(name))
            names.insert(std::move(name));
    }
    m_folderAccess = error == std::errc::permission_denied
                         ? denial(m_places.inputFolder, readingAndSearching)
                         : NodeAccess::ok;
    for (const std::string& name : names)
        lookAt(name);
}

void DeviceWatch::lookAt(const std::string& name) {
    const std::string path = m_places.inputFolder + "/" + name;
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0 && errno != EACCES)
        return forget(name);
    const auto known = m_known.find(name);
    if (known == m_known.end() && m_known.size() >= maxNodes) {
        if (!m_isOverfull)
            m_sink.complain({"holds more nodes than are looked at", m_places.inputFolder});
        m_isOverfull = true;
        return;
    }
    Node node;
    node.inode = info.st_ino;
    if (auto entries = m_nodes.read(path)) {
        node.access = NodeAccess::ok;
        node.entries = std::move(*entries);
    } else if (isRefusal(entries.error())) {
        node.access = denial(path, reading);
    } else if (isAbsence(entries.error())) {
        return forget(name);
    } else {
        m_sink.complain({"is no input device to read: " + reason(entries.error()), path});
    }
    if (known != m_known.end() && known->second.inode == node.inode &&
        known->second.access == node.access && known->second.entries == node.entries)
        return;
    forget(name);
    for (const SeenDeviceInfo& entry : node.entries)
        node.devices.push_back(m_sink.addDevice(entry));
    m_known.emplace(name, std::move(node));
}

void DeviceWatch::forget(const std::string& name) {
    const auto known = m_known.find(name);
    if (known == m_known.end())
        return;
    for (const engine::DeviceIndex device : known->second.devices)
        m_sink.removeDevice(device);
    m_known.erase(known);
    m_isOverfull = false;
}

NodeAccess DeviceWatch::denial(const std::string& path, mode_t wanted) const {
    struct stat info {};
    // Without its attributes: behind a folder that is closed to this process.
    if (::stat(path.c_str(), &info) != 0)
        return NodeAccess::noAccess;
    return whyDenied(info.st_mode, info.st_gid, wanted, m_nodes.groups());
}

NodeAccess DeviceWatch::driverAccess() const {
    const int error = m_nodes.tryOpen(m_places.uinputNode);
    if (error == 0)
        return NodeAccess::ok;
    return isRefusal(error) ? denial(m_places.uinputNode, readingAndWriting) : NodeAccess::noNode;
}

NodeAccess DeviceWatch::inputAccess() const {
    if (m_folderAccess != NodeAccess::ok)
        return m_folderAccess;
    std::vector<InputNode> nodes;
    for (const auto& [name, node] : m_known) {
        const bool isKeyboard =
            std::any_of(node.entries.begin(), node.entries.end(),
                        [](const SeenDeviceInfo& entry) { return !entry.isMouse; });
        nodes.push_back({node.access, isKeyboard});
    }
    return tamsel::inputAccess(nodes);
}

void DeviceWatch::report() {
    const AccessReport report{driverAccess(), inputAccess()};
    if (m_hasReported && report == m_reported)
        return;
    m_hasReported = true;
    m_reported = report;
    m_sink.accessChanged(report);
}

} // namespace tamsel
