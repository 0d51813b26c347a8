#include "devices/device_watch.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <set>
#include <string_view>
#include <sys/stat.h>
#include <system_error>

namespace tamsel {

namespace {

namespace fs = std::filesystem;

constexpr mode_t reading = 4;
constexpr mode_t readingAndWriting = 6;
constexpr mode_t readingAndSearching = 5;

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

DeviceWatch::DeviceWatch(Places places, const DeviceNodes& nodes, Helpers& helpers,
                         DeviceSink& sink)
    : m_places(std::move(places)), m_nodes(nodes), m_helpers(helpers), m_sink(sink) {}

void DeviceWatch::lookAtEverything() {
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
        changed(name);
    report();
}

void DeviceWatch::changed(const std::string& name) {
    if (!isEventNode(name))
        return;
    if (!m_known.contains(name) && m_known.size() >= maxNodes) {
        if (!m_isOverfull)
            m_sink.complain({"holds more nodes than are looked at", m_places.inputFolder});
        m_isOverfull = true;
        return;
    }
    const std::uint64_t look = m_known[name].look = ++m_looks;
    ++m_pending;
    auto result = std::make_shared<tl::expected<NodeDescription, int>>(tl::unexpected(ENOENT));
    m_helpers.run([result, &nodes = m_nodes,
                   path = m_places.inputFolder + "/" + name] { *result = nodes.look(path); },
                  [this, result, name, look, life = std::weak_ptr(m_life)] {
                      if (!life.expired())
                          looked(name, look, *result);
                  });
}

void DeviceWatch::looked(const std::string& name, std::uint64_t look,
                         const tl::expected<NodeDescription, int>& result) {
    --m_pending;
    if (const auto known = m_known.find(name);
        known != m_known.end() && known->second.look == look) {
        Node& node = known->second;
        const std::string path = m_places.inputFolder + "/" + name;
        if (result) {
            node.access = NodeAccess::ok;
            if (node.told && node.told->sysPath != result->sysPath)
                m_sink.nodeGone(std::exchange(node.told, std::nullopt)->name);
            if (!node.told && result->isOfInterest()) {
                node.told = *result;
                m_sink.nodeAppeared(*node.told);
            }
        } else if (isAbsence(result.error())) {
            forget(name);
        } else if (isRefusal(result.error())) {
            node.access = denial(path, reading);
            if (node.told)
                m_sink.nodeGone(std::exchange(node.told, std::nullopt)->name);
        } else if (result.error() != EAGAIN) {
            m_sink.complain(
                {"cannot be read: " + std::generic_category().message(result.error()), path});
        }
    }
    report();
}

void DeviceWatch::gone(const std::string& name) {
    forget(name);
    report();
}

void DeviceWatch::forget(const std::string& name) {
    const auto known = m_known.find(name);
    if (known == m_known.end())
        return;
    const bool wasTold = known->second.told.has_value();
    m_known.erase(known);
    m_isOverfull = false;
    if (wasTold)
        m_sink.nodeGone(name);
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
    std::vector<InputNodeAccess> nodes;
    for (const auto& [name, node] : m_known) {
        const bool isKeyboard =
            node.told && std::any_of(node.told->entries.begin(), node.told->entries.end(),
                                     [](const SeenDeviceInfo& entry) { return !entry.isMouse; });
        nodes.push_back({node.access, isKeyboard});
    }
    return tamsel::inputAccess(nodes);
}

void DeviceWatch::report() {
    // Half a picture would be a wrong one.
    if (m_pending > 0)
        return;
    const AccessReport report{driverAccess(), inputAccess()};
    if (m_hasReported && report == m_reported)
        return;
    m_hasReported = true;
    m_reported = report;
    m_sink.accessChanged(report);
}

} // namespace tamsel
