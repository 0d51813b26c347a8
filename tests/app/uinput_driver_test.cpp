#include "platform/linux/driver/uinput_driver.h"

#include "platform/linux/driver/unmanaged_driver.h"
#include "platform/linux/process/qt_main_queue.h"
#include "platform/linux/process/thread_background_queue.h"
#include "support/files.h"

#include <QEventLoop>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstring>
#include <grp.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace tamsel {

namespace {

using Kind = SystemExtensionRequest::Kind;

const QString driverId = QStringLiteral("app.tamsel.driver.virtualhid");
const QString rule = QStringLiteral("/etc/udev/rules.d/60-tamsel-uinput.rules");
const QString packagedRule = QStringLiteral("/usr/lib/udev/rules.d/60-tamsel-uinput.rules");

const auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner;
const auto forGroup = ownerOnly | QFile::ReadGroup | QFile::WriteGroup;
const auto executable = ownerOnly | QFile::ExeOwner;

/// Notes what it hears, codes only.
struct Listener final : SystemExtensionRequestDelegate {
    QStringList heard;
    QString text;
    ReplacementAction answer = ReplacementAction::replace;
    std::function<void()> onEnd;

    ReplacementAction
    actionForReplacingExtension(const SystemExtensionRequest&,
                                const SystemExtensionProperties& installed,
                                const SystemExtensionProperties& offered) override {
        heard << "replace " + installed.bundleVersion + ' ' + offered.bundleVersion;
        return answer;
    }
    void requestNeedsUserApproval(const SystemExtensionRequest&) override { heard << "approval"; }
    void didFinishWithResult(const SystemExtensionRequest&, std::int64_t result) override {
        heard << QStringLiteral("finished %1").arg(result);
        onEnd();
    }
    void didFailWithError(const SystemExtensionRequest&,
                          const SystemExtensionError& error) override {
        EXPECT_EQ(error.domain, systemExtensionErrorDomain);
        heard << QStringLiteral("failed %1").arg(error.code);
        text = error.localizedDescription;
        onEnd();
    }
};

} // namespace

/// The driver on a root folder of the test's own, with a stand-in for the authorization program
/// that notes its words and does what the helper would have done.
struct UinputDriverTest : testing::Test {
    QTemporaryDir folder;
    QtMainQueue queue;
    ThreadBackgroundQueue background{[] {}};
    QEventLoop loop;
    Listener listener;
    UinputPlaces places{"/opt/helper", QString(::getgrgid(::getgid())->gr_name),
                        folder.filePath("pkexec"), folder.filePath("root")};
    int open = 0;

    UinputDriverTest() {
        listener.onEnd = [this] {
            if (--open == 0)
                loop.quit();
        };
    }
    void putInRoot(const QString& path, const QByteArray& text) {
        writeFile(places.root + path, text, ownerOnly);
    }
    void run(const std::vector<Kind>& kinds, const QString& identifier = driverId) {
        UinputDriver driver(queue, background, places);
        listener.heard.clear();
        listener.text.clear();
        open = static_cast<int>(kinds.size());
        for (const Kind kind : kinds)
            driver.submit({kind, identifier}, listener);
        EXPECT_TRUE(listener.heard.isEmpty()) << "submit() returns at once";
        const TaskHandle limit = queue.after(std::chrono::seconds(20), [this] { loop.quit(); });
        loop.exec();
        EXPECT_EQ(open, 0);
    }
    QStringList takeCalls() {
        QFile log(folder.filePath("calls"));
        if (!log.open(QFile::ReadOnly))
            return {};
        const QString text = log.readAll();
        log.remove();
        return text.split('\n', Qt::SkipEmptyParts);
    }
};

TEST_F(UinputDriverTest, RequestsEndAsTheMachineAndItsUserHaveIt) {
    enum Node { none, closed, usable };
    constexpr auto on = Kind::activation;
    constexpr auto off = Kind::deactivation;
    constexpr auto module = "kernel/drivers/input/misc/uinput.ko.xz:\n";
    constexpr auto others = "kernel/a/xuinput.ko: kernel/b/uinput.ko\n";
    constexpr auto current = "# tamsel-access 1\n";
    constexpr auto helps = "case $3 in load) : >$node; chmod 600 $node ;;\n"
                           "grant) chmod 660 $node; echo '# tamsel-access 1' >$rule ;;\n"
                           "revoke) rm $rule ;; esac\n";
    const struct {
        const char* name;
        Kind kind;
        const char* modules;
        Node node;
        const char* installed;
        const char* helper; ///< what the authorization program's stand-in does
        const char* calls;
        const char* heard;
    } cases[] = {
        {"no driver", on, "", none, "", helps, "", "failed 4"},
        {"another module", on, others, none, "", helps, "", "failed 4"},
        {"all missing", on, module, none, "", helps, "load grant", "approval|finished 0"},
        {"load", on, module, none, current, "umask 7; : >$node", "load", "approval|finished 0"},
        {"no device appears", on, module, none, "", "", "load", "approval|failed 1"},
        {"no access", on, "", closed, "", helps, "grant", "approval|finished 0"},
        {"set up", on, "", usable, current, helps, "", "finished 0"},
        {"access by another rule", on, "", usable, "", helps, "", "finished 0"},
        {"older rule", on, "", usable, "# tamsel-access 0.9\n", helps, "grant",
         "replace 0.9 1|approval|finished 0"},
        {"a rule without version", on, "", closed, "KERNEL==\"x\"\n", helps, "grant",
         "replace 0 1|approval|finished 0"},
        {"after a restart", on, "", closed, "", "", "grant", "approval|finished 1"},
        {"not applied", on, "", closed, "", "exit 6", "grant", "approval|finished 1"},
        {"dismissed", on, "", closed, "", "exit 126", "grant", "approval|failed 13"},
        {"refused", on, "", closed, "", "exit 127", "grant", "approval|failed 10"},
        {"stuck", on, module, none, "", "exit 11", "load", "approval|failed 11"},
        {"not loadable", on, module, none, "", "exit 4", "load", "approval|failed 4"},
        {"killed", on, "", closed, "", "kill -9 $$", "grant", "approval|failed 1"},
        {"remove", off, "", usable, current, helps, "revoke", "approval|finished 0"},
        {"nothing to remove", off, "", none, "", helps, "", "finished 0"},
        {"dismissed removal", off, "", closed, current, "exit 126", "revoke", "approval|failed 13"},
        {"removed in vain", off, "", closed, current, "", "revoke", "approval|failed 1"},
    };
    const QString node = places.root + "/dev/uinput";
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        QDir(places.root).removeRecursively();
        QDir().mkpath(places.root + "/dev");
        QDir().mkpath(places.root + "/etc/udev/rules.d");
        if (*c.modules)
            putInRoot("/lib/modules/" + kernelRelease() + "/modules.dep", c.modules);
        if (c.node != none)
            writeFile(node, {}, c.node == closed ? ownerOnly : forGroup);
        if (*c.installed)
            putInRoot(rule, c.installed);
        writeFile(places.authorize,
                  "#!/bin/sh\necho \"$*\" >>" + QFile::encodeName(folder.filePath("calls")) +
                      "\nnode=" + node.toUtf8() + "\nrule=" + (places.root + rule).toUtf8() + "\n" +
                      c.helper + "\n",
                  executable);
        run({c.kind});
        EXPECT_EQ(listener.heard.join('|'), c.heard);
        QStringList calls = QString(c.calls).split(' ', Qt::SkipEmptyParts);
        EXPECT_EQ(takeCalls(), calls.replaceInStrings(QRegularExpression("^"),
                                                      "--disable-internal-agent /opt/helper "));
        EXPECT_EQ(listener.text.isEmpty(), !listener.heard.last().startsWith("failed"));
    }
}

TEST_F(UinputDriverTest, WithoutTheMeansTheReasonIsSaid) {
    run({Kind::activation});
    EXPECT_EQ(listener.text, "This kernel (" + kernelRelease() +
                                 ") has no uinput driver, through which Tamsel posts keys. Install "
                                 "your distribution's complete kernel and restart.");
    run({Kind::activation}, "com.example.driver");
    EXPECT_EQ(listener.heard, QStringList{"failed 4"});

    writeFile(places.root + "/dev/uinput", {}, QFile::ReadOwner);
    run({Kind::activation}); // no authorization program
    EXPECT_EQ(listener.heard, QStringList{"failed 13"});
    places.helper.clear();
    run({Kind::activation});
    EXPECT_EQ(listener.heard, QStringList{"failed 1"});
    places.daemonGroup = "no-such-group";
    run({Kind::activation});
    EXPECT_EQ(listener.heard, QStringList{"failed 1"}) << "its members can't have access";

    putInRoot(rule, "# tamsel-access 0\n");
    listener.answer = ReplacementAction::cancel;
    run({Kind::activation});
    EXPECT_EQ(listener.heard, (QStringList{"replace 0 1", "failed 1"}));
}

TEST_F(UinputDriverTest, ANodeWithoutADriverBehindItIsNoDriver) {
    const QByteArray node = (places.root + "/dev/uinput").toUtf8();
    QDir().mkpath(places.root + "/dev");
    sockaddr_un address{AF_UNIX, {}}; // what answers an open() as a device without a driver does
    ASSERT_LT(static_cast<std::size_t>(node.size()), sizeof address.sun_path);
    std::strcpy(address.sun_path, node.constData());
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ::close(fd);
    run({Kind::activation});
    EXPECT_EQ(listener.heard, QStringList{"failed 4"});
}

TEST_F(UinputDriverTest, APackagesRuleCountsUnlessItIsCovered) {
    writeFile(places.root + "/dev/uinput", {}, forGroup);
    putInRoot(packagedRule, "# tamsel-access 2\n");
    EXPECT_EQ(readUinputState(places).installedVersion, "2");
    QDir().mkpath(places.root + "/etc/udev/rules.d");
    ASSERT_TRUE(QFile::link("/dev/null", places.root + rule));
    EXPECT_EQ(readUinputState(places).installedVersion, std::nullopt);
    QFile::remove(places.root + rule);
    putInRoot(rule, "# tamsel-access bad version\n");
    EXPECT_EQ(readUinputState(places).installedVersion, "0");
    places.daemonGroup.reset();
    EXPECT_TRUE(readUinputState(places).hasAccess) << "as the user";
}

TEST_F(UinputDriverTest, RequestsAreServedInTurnAndOutliveTheirListener) {
    run({Kind::deactivation, Kind::activation, Kind::deactivation});
    EXPECT_EQ(listener.heard, (QStringList{"finished 0", "failed 4", "finished 0"}));

    UinputDriver driver(queue, background, places);
    UnmanagedDriver unmanaged(queue);
    listener.heard.clear();
    open = 2;
    {
        Listener gone;
        driver.submit({Kind::activation, driverId}, gone);
        unmanaged.submit({Kind::activation, driverId}, gone);
    }
    driver.submit({Kind::deactivation, driverId}, listener);
    unmanaged.submit({Kind::activation, driverId}, listener);
    EXPECT_TRUE(listener.heard.isEmpty());
    const TaskHandle limit = queue.after(std::chrono::seconds(20), [this] { loop.quit(); });
    loop.exec();
    EXPECT_EQ(listener.heard, (QStringList{"finished 0", "finished 0"}));
}

} // namespace tamsel
