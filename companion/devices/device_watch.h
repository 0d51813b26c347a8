#pragma once

#include "base/error.h"
#include "core/access_report.h"
#include "devices/device_nodes.h"
#include "devices/helpers.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace tamsel {

/// Where nodes are told of as they come and go.
class DeviceSink {
public:
    virtual ~DeviceSink() = default;

    /// A node of interest is there.
    virtual void nodeAppeared(const NodeDescription& node) = 0;
    virtual void nodeGone(const std::string& name) = 0;
    /// Called once at the start and then when the report has changed.
    virtual void accessChanged(const AccessReport& report) = 0;
    /// Called with what goes wrong with a node; the others go on.
    virtual void complain(const Error& error) = 0;
};

/// Knows the machine's device nodes: what each is, and what keeps this process from them. It is
/// told which have changed, looks at each on a helper, and tells of those of interest. Neither the
/// folder nor the driver's node need exist.
class DeviceWatch final {
public:
    /// Nodes looked at; a machine with more has something wrong with it.
    static constexpr std::size_t maxNodes = 256;

    struct Places {
        std::string inputFolder = "/dev/input";
        std::string uinputNode = "/dev/uinput";
    };

    /// `nodes`, `helpers` and `sink` outlive the watch.
    DeviceWatch(Places places, const DeviceNodes& nodes, Helpers& helpers, DeviceSink& sink);

    /// At the start, after a loss of news, and when something else may have changed.
    void lookAtEverything();
    /// A node, by its name ("event3"), has come or changed; names of others are ignored.
    void changed(const std::string& name);
    void gone(const std::string& name);
    void driverChanged() { report(); }

private:
    struct Node {
        std::uint64_t look = 0; ///< the last one's number; the answers to earlier ones are stale
        NodeAccess access = NodeAccess::noNode;
        std::optional<NodeDescription> told;
    };

    void looked(const std::string& name, std::uint64_t look,
                const tl::expected<NodeDescription, int>& result);
    void forget(const std::string& name);
    NodeAccess denial(const std::string& path, mode_t wanted) const;
    NodeAccess driverAccess() const;
    NodeAccess inputAccess() const;
    void report();

    Places m_places;
    const DeviceNodes& m_nodes;
    Helpers& m_helpers;
    DeviceSink& m_sink;
    std::map<std::string, Node> m_known;
    std::uint64_t m_looks = 0;
    std::size_t m_pending = 0;
    AccessReport m_reported;
    NodeAccess m_folderAccess = NodeAccess::noNode;
    bool m_hasReported = false;
    bool m_isOverfull = false;
    std::shared_ptr<bool> m_life = std::make_shared<bool>();
};

} // namespace tamsel
