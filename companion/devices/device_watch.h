#pragma once

#include "base/error.h"
#include "engine/key_events.h"
#include "core/access_report.h"
#include "devices/device_nodes.h"
#include "base/unique_fd.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

struct inotify_event;

namespace tamsel {

/// Where devices are told of as they come and go.
class DeviceSink {
public:
    virtual ~DeviceSink() = default;

    /// A device is there; the returned number stands for it from now on.
    virtual engine::DeviceIndex addDevice(const SeenDeviceInfo& device) = 0;
    virtual void removeDevice(engine::DeviceIndex device) = 0;
    /// Called once at the start and then when the report has changed.
    virtual void accessChanged(const AccessReport& report) = 0;
    /// Called with what goes wrong with a node; the others go on.
    virtual void complain(const Error& error) = 0;
};

/// Watches the machine's device nodes: tells of each keyboard and pointer interface, and of what
/// keeps this process from them. A node that appears before its permissions are set is looked at
/// again when they change. Neither the folder nor the driver's node need exist yet; the folders
/// they are in must.
class DeviceWatch final {
public:
    /// Nodes looked at; a machine with more has something wrong with it.
    static constexpr std::size_t maxNodes = 256;

    struct Places {
        std::string inputFolder = "/dev/input";
        std::string uinputNode = "/dev/uinput";
    };

    /// `nodes` and `sink` outlive the watch.
    DeviceWatch(Places places, const DeviceNodes& nodes, DeviceSink& sink);

    /// Tells of what is there now.
    Result<void> start();

    /// The descriptor to wait on for reading, once started.
    int fd() const { return m_inotify.get(); }
    /// Takes in what has happened, without blocking; at most one buffer full.
    void read();

private:
    struct Node {
        std::uint64_t inode = 0; ///< a new device under an old name has a new one
        NodeAccess access = NodeAccess::noNode;
        std::vector<SeenDeviceInfo> entries;
        std::vector<engine::DeviceIndex> devices;
    };
    /// What a batch of the kernel's news makes necessary.
    struct News {
        std::set<std::string> names; ///< of nodes to look at
        bool isEverything = false;   ///< all of them
        bool isDriver = false;       ///< the driver's node
    };

    void take(const inotify_event& event, News& news);
    void watchInputFolder();
    void lookAtEverything();
    void lookAt(const std::string& name);
    void forget(const std::string& name);
    NodeAccess denial(const std::string& path, mode_t wanted) const;
    NodeAccess driverAccess() const;
    NodeAccess inputAccess() const;
    void report();

    Places m_places;
    const DeviceNodes& m_nodes;
    DeviceSink& m_sink;
    UniqueFd m_inotify;
    int m_inputWatch = -1;
    std::map<std::string, Node> m_known;
    AccessReport m_reported;
    NodeAccess m_folderAccess = NodeAccess::noNode;
    bool m_hasReported = false;
    bool m_isOverfull = false;
};

} // namespace tamsel
