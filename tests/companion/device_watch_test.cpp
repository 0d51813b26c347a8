#include "devices/device_watch.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tamsel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

constexpr gid_t inputGroup = 4242;

/// Nodes are files: the text says what the device is, the mode's owner bits whether it opens.
class FileNodes final : public DeviceNodes {
public:
    tl::expected<NodeDescription, int> look(const std::string& path) const override {
        struct stat info {};
        if (::stat(path.c_str(), &info) != 0)
            return tl::unexpected(errno);
        if ((info.st_mode & S_IRUSR) == 0)
            return tl::unexpected(EACCES);
        std::ifstream file(path);
        NodeDescription node;
        node.name = fs::path(path).filename();
        node.sysPath = std::to_string(info.st_ino);
        for (std::string name; std::getline(file, name);) {
            if (name == "broken")
                return tl::unexpected(EINVAL);
            if (name == "early")
                return tl::unexpected(EAGAIN);
            if (name != "button")
                node.entries.push_back(
                    {1, 2, name, "", "usb", false, false, name.starts_with("mouse")});
        }
        return node;
    }
    int tryOpen(const std::string& path) const override {
        struct stat info {};
        if (::stat(path.c_str(), &info) != 0)
            return errno;
        return (info.st_mode & S_IWUSR) != 0 ? 0 : EACCES;
    }
    Groups groups() const override { return known; }

    Groups known;
};

class Sink final : public DeviceSink {
public:
    void nodeAppeared(const NodeDescription& node) override {
        EXPECT_TRUE(present.emplace(node.name, node).second);
        ++told;
    }
    void nodeGone(const std::string& name) override { EXPECT_EQ(present.erase(name), 1U); }
    void accessChanged(const AccessReport& report) override { reports.push_back(report); }
    void complain(const Error& error) override { complaints.push_back(error.description()); }

    std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const auto& [node, description] : present) {
            for (const SeenDeviceInfo& entry : description.entries)
                names.push_back(entry.product);
        }
        return names;
    }

    std::map<std::string, NodeDescription> present;
    int told = 0;
    std::vector<AccessReport> reports;
    std::vector<std::string> complaints;
};

class DeviceWatchTest : public testing::Test {
protected:
    DeviceWatchTest() { fs::create_directories(m_input); }
    ~DeviceWatchTest() override { fs::remove_all(m_root); }

    void plug(const std::string& node, const std::string& text, mode_t mode = 0660) const {
        const fs::path path = m_input / node;
        std::ofstream(path) << text;
        permit(path, mode);
    }
    static void permit(const fs::path& path, mode_t mode) {
        ASSERT_EQ(::chmod(path.c_str(), mode), 0);
        // Without the right to give files away the tests of groups are skipped.
        (void)!::chown(path.c_str(), static_cast<uid_t>(-1), inputGroup);
    }
    void finishLooking() {
        while (!m_helpers.isIdle())
            m_helpers.finish();
    }
    std::vector<std::string> names() {
        m_watch.lookAtEverything();
        finishLooking();
        return m_sink.names();
    }
    AccessReport report() {
        names();
        return m_sink.reports.back();
    }

    fs::path m_root = fs::temp_directory_path() / ("tamsel-watch-" + std::to_string(::getpid()));
    fs::path m_input = m_root / "input";
    fs::path m_uinput = m_root / "uinput";
    FileNodes m_nodes;
    Sink m_sink;
    Helpers m_helpers;
    DeviceWatch m_watch{{m_input.string(), m_uinput.string()}, m_nodes, m_helpers, m_sink};
};

TEST_F(DeviceWatchTest, followsDevicesAsTheyComeAndGo) {
    plug("event0", "keys\nmouse of keys\n");
    plug("event1", "button\n");
    for (const char* const other : {"mouse0", "event", "eventx", "event1.tmp", "js0"})
        plug(other, "stray\n");
    EXPECT_THAT(names(), ElementsAre("keys", "mouse of keys"));
    plug("event10", "new keys\n");
    m_watch.changed("event10");
    m_watch.changed("event10");
    m_watch.changed("mouse1");
    finishLooking();
    EXPECT_THAT(m_sink.names(), ElementsAre("keys", "mouse of keys", "new keys"));
    m_watch.gone("event0");
    m_watch.changed("event10");
    m_watch.gone("event10");
    EXPECT_THAT(m_sink.names(), ElementsAre());
    finishLooking();
    EXPECT_THAT(m_sink.names(), ElementsAre()) << "a look that comes late tells of nothing";
    EXPECT_THAT(names(), ElementsAre("keys", "mouse of keys", "new keys"));
    fs::remove(m_input / "event0");
    EXPECT_THAT(names(), ElementsAre("new keys")) << "without anybody's word";
    EXPECT_THAT(m_sink.complaints, ElementsAre());
}

TEST_F(DeviceWatchTest, anotherDeviceUnderAnOldNameIsAnotherDevice) {
    plug("event0", "keys\n");
    names();
    plug("spare", "other keys\n");
    fs::rename(m_input / "spare", m_input / "event0");
    EXPECT_THAT(names(), ElementsAre("other keys"));
    EXPECT_EQ(m_sink.told, 2);
    permit(m_input / "event0", 0600);
    names();
    EXPECT_EQ(m_sink.told, 2) << "new permissions make no new device";
}

TEST_F(DeviceWatchTest, waitsForTheAnnouncement) {
    plug("event0", "early\n");
    EXPECT_EQ(report().input, NodeAccess::noNode);
    plug("event0", "keys\n");
    EXPECT_THAT(names(), ElementsAre("keys"));
    EXPECT_THAT(m_sink.complaints, ElementsAre());
}

TEST_F(DeviceWatchTest, looksAgainWhenPermissionsAreSet) {
    plug("event0", "keys\n", 0);
    EXPECT_THAT(names(), ElementsAre());
    EXPECT_EQ(report().input, NodeAccess::noAccess);
    permit(m_input / "event0", 0660);
    EXPECT_THAT(names(), ElementsAre("keys"));
    EXPECT_EQ(report().input, NodeAccess::ok);
    permit(m_input / "event0", 0);
    EXPECT_THAT(names(), ElementsAre());
    EXPECT_EQ(report().input, NodeAccess::noAccess);
}

TEST_F(DeviceWatchTest, reportsWhatKeepsItFromInput) {
    EXPECT_EQ(report().input, NodeAccess::noNode);
    plug("event0", "button\n");
    EXPECT_EQ(report().input, NodeAccess::ok);
    plug("event1", "keys\n", 0060);
    EXPECT_EQ(report().input, NodeAccess::noAccess) << "a button in reach is not enough";
    plug("event2", "keys\n");
    EXPECT_EQ(report().input, NodeAccess::ok) << "a keyboard is";
    const std::size_t count = m_sink.reports.size();
    plug("event3", "mouse\n");
    report();
    EXPECT_EQ(m_sink.reports.size(), count) << "only changes are told";
}

TEST_F(DeviceWatchTest, reportsWhatKeepsItFromTheDriver) {
    EXPECT_EQ(report().uinput, NodeAccess::noNode);
    std::ofstream(m_uinput) << "";
    permit(m_uinput, 0060);
    EXPECT_EQ(report().uinput, NodeAccess::noAccess);
    permit(m_uinput, 0660);
    EXPECT_EQ(report().uinput, NodeAccess::ok);
    fs::remove(m_uinput);
    EXPECT_EQ(report().uinput, NodeAccess::noNode);
}

TEST_F(DeviceWatchTest, aGrantedGroupNeedsALogin) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root gives files to a group it is not in";
    m_nodes.known = {{100}, {100, inputGroup}};
    plug("event0", "keys\n", 0060);
    std::ofstream(m_uinput) << "";
    permit(m_uinput, 0040);
    EXPECT_EQ(report(), (AccessReport{NodeAccess::noAccess, NodeAccess::notInGroupYet}))
        << "the driver's node is not writable by its group";
    permit(m_uinput, 0060);
    EXPECT_EQ(report().uinput, NodeAccess::notInGroupYet);
}

TEST_F(DeviceWatchTest, badNodesAreReportedAndTheOthersGoOn) {
    plug("event0", "broken\n");
    plug("event1", "keys\n");
    EXPECT_THAT(names(), ElementsAre("keys"));
    EXPECT_THAT(m_sink.complaints, ElementsAre(testing::HasSubstr("event0")));
}

TEST_F(DeviceWatchTest, manyNodesAreBounded) {
    for (std::size_t i = 0; i < DeviceWatch::maxNodes + 20; ++i)
        plug("event" + std::to_string(i), "keys\n");
    EXPECT_EQ(names().size(), DeviceWatch::maxNodes);
    EXPECT_EQ(m_sink.complaints.size(), 1U);
}

TEST(AccessReport, whyDenied) {
    struct Case {
        mode_t mode;
        gid_t group;
        Groups groups;
        NodeAccess expected;
    };
    const Case cases[] = {
        {0660, 5, {{1}, {1, 5}}, NodeAccess::notInGroupYet},
        {0660, 5, {{1, 5}, {1, 5}}, NodeAccess::noAccess},
        {0660, 5, {{1}, {1}}, NodeAccess::noAccess},
        {0640, 5, {{1}, {1, 5}}, NodeAccess::noAccess},
        {0600, 5, {{1}, {5}}, NodeAccess::noAccess},
        {0060, 0, {{}, {}}, NodeAccess::noAccess},
    };
    for (const Case& each : cases)
        EXPECT_EQ(whyDenied(each.mode, each.group, 6, each.groups), each.expected)
            << std::oct << each.mode;
}

TEST(AccessReport, thisProcessIsInItsGroups) {
    EXPECT_THAT(Groups::current().held, testing::Contains(::getegid()));
}

TEST(EvdevNodes, whatIsNoInputDeviceIsAnErrorAndBlocksNobody) {
    const EvdevNodes nodes("/nowhere", VirtualDevices::ignored);
    const std::string path =
        fs::temp_directory_path() / ("tamsel-fifo-" + std::to_string(::getpid()));
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    const std::pair<std::string, int> cases[] = {
        {path, ENOTTY}, {"/dev/null", ENOTTY}, {"/", EISDIR}, {"/nowhere/event0", ENOENT}};
    for (const auto& [node, error] : cases) {
        const auto read = nodes.look(node);
        ASSERT_FALSE(read) << node;
        EXPECT_EQ(read.error(), error) << node;
    }
    EXPECT_EQ(nodes.tryOpen("/nowhere/uinput"), ENOENT);
    EXPECT_EQ(nodes.tryOpen("/dev/null"), 0);
    fs::remove(path);
}

TEST(UsbManufacturer, isTheNearestUsbDevices) {
    const fs::path root = fs::temp_directory_path() / ("tamsel-sys-" + std::to_string(::getpid()));
    const fs::path hub = root / "devices/usb1";
    const auto put = [](const fs::path& folder, const char* file, const char* text) {
        fs::create_directories(folder);
        std::ofstream(folder / file) << text;
    };
    const auto link = [&](const char* node, const fs::path& input) {
        fs::create_directories(input / node);
        fs::create_directories(root / "class/input" / node);
        fs::create_directory_symlink(input, root / "class/input" / node / "device");
    };
    put(hub, "idVendor", "1d6b\n");
    put(hub, "manufacturer", "The hub's maker\n");
    put(hub / "1-1", "idVendor", "046d\n");
    put(hub / "1-1", "manufacturer", "Keys \xFF Inc.\n");
    put(hub / "1-2", "idVendor", "046d\n");
    link("event1", hub / "1-1/1-1:1.0/input/input1");
    link("event2", hub / "1-2/1-2:1.0/input/input2");
    link("event3", root / "devices/virtual/input/input3");
    const std::pair<const char*, const char*> cases[] = {
        {"event1", "Keys ? Inc."}, {"event2", ""}, {"event3", ""}, {"event4", ""}};
    for (const auto& [node, maker] : cases)
        EXPECT_EQ(usbManufacturer(root.string(), node), maker) << node;
    EXPECT_EQ(usbManufacturer((root / "nowhere").string(), "event1"), "");
    fs::remove_all(root);
}

} // namespace
} // namespace tamsel
