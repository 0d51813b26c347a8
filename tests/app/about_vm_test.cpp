#include "../support/lifecycle_fixture.h"

#include "app/about_vm.h"
#include "support/files.h"

#include <QTemporaryDir>

namespace tamsel {

struct AboutVMTest : LifecycleFixture {
    AboutVM& about = *program.screens.about();

    /// True when the screen took the key.
    bool press(const QString& characters) {
        LocalKeyEvent event;
        event.charactersIgnoringModifiers = characters;
        event.focus = FocusKind::other;
        return localEvents.send(event);
    }
};

TEST_F(AboutVMTest, KeysChooseTabsWhileTheScreenIsShown) {
    int viewers = 0;
    QObject::connect(&about, &AboutVM::keyViewerRequested, [&viewers] { ++viewers; });
    EXPECT_FALSE(press("l"));
    about.appear();
    about.appear();
    const std::pair<const char*, AboutVM::AboutTab> keys[] = {{"l", AboutVM::Logs},
                                                              {"F", AboutVM::Feedback},
                                                              {"D", AboutVM::Advanced},
                                                              {"w", AboutVM::WhatsNew}};
    for (const auto& [key, tab] : keys) {
        EXPECT_TRUE(press(key));
        EXPECT_EQ(about.selectedTab(), tab);
    }
    EXPECT_TRUE(press("k"));
    EXPECT_EQ(viewers, 1);
    about.disappear();
    EXPECT_FALSE(press("l"));
    EXPECT_EQ(about.selectedTab(), AboutVM::WhatsNew);
}

TEST_F(AboutVMTest, ChecksWhenItAppearsUnlessItMayNot) {
    about.appear();
    EXPECT_EQ(updater.calls, QStringList{"background"});
    about.setDisableAutoCheck(true);
    about.appear();
    EXPECT_EQ(updater.calls, QStringList{"background"});
}

TEST_F(AboutVMTest, OneActionForEachStateOfTheUpdate) {
    about.setDisableAutoCheck(true);
    about.appear();
    int answers = 0;
    const auto answer = [&answers](SPUUserUpdateChoice choice) {
        answers += choice == SPUUserUpdateChoice::install ? 1 : 100;
    };
    const auto act = [this] {
        updater.calls.clear();
        press("u");
        return updater.calls.join(' ').toStdString();
    };
    EXPECT_EQ(about.updateState(), AboutVM::Idle);
    EXPECT_EQ(act(), "check");
    EXPECT_EQ(about.updateState(), AboutVM::Checking);
    EXPECT_EQ(act(), "");
    updater.delegate->didNotFindUpdate();
    EXPECT_EQ(act(), "check");
    updater.driver->showUpdaterError({{}, 1, "broken"}, [] {});
    EXPECT_EQ(about.updateStatus().message, "broken");
    EXPECT_EQ(act(), "check");
    updater.driver->showUpdateFound({"1.5", "150"}, answer);
    EXPECT_EQ(about.updateStatus().version, "1.5");
    EXPECT_EQ(act(), "");
    EXPECT_EQ(answers, 1);
    updater.driver->showDownloadInitiated();
    EXPECT_EQ(about.updateState(), AboutVM::Downloading);
    EXPECT_EQ(act(), "");
    EXPECT_FALSE(delegate.isFullQuit());
    updater.driver->showReadyToInstallAndRelaunch(answer);
    EXPECT_EQ(act(), "");
    EXPECT_EQ(answers, 2);
    EXPECT_TRUE(delegate.isFullQuit()) << "the installer may end the application";
}

TEST_F(AboutVMTest, ShowsVersionLogAndChangelog) {
    bundle.infoStrings.clear();
    EXPECT_EQ(about.versionLine(), "v1.0.0 (Build 1)");
    bundle.infoStrings = {{"CFBundleShortVersionString", "1.4.2"}, {"CFBundleVersion", "142"}};
    EXPECT_EQ(about.versionLine(), "v1.4.2 (Build 142)");
    queue.runPending();
    about.clearLog();
    EXPECT_EQ(about.logCount(), 0);
    logger.error("one");
    queue.runPending();
    EXPECT_EQ(about.logCount(), 1);
    EXPECT_TRUE(about.logText().endsWith(" one"));
    about.copyLog();
    EXPECT_EQ(pasteboard.contents, about.logText());

    const QTemporaryDir folder;
    bundle.resources["changelog.txt"] = folder.filePath("changelog.txt");
    for (const char* text : {"first", "later"}) {
        writeFile(folder.filePath("changelog.txt"), text);
        about.appear();
        EXPECT_EQ(about.changelogText(), "first") << "loaded once";
    }
}

TEST_F(AboutVMTest, UninstallsServicesThenDriverAndGoesOn) {
    daemonMgr.registerServices();
    sysExtMgr.loadExtension();
    extensions.finish(0);
    queue.runPending();
    takeLog();
    about.setShowUninstallConfirm(true);
    about.uninstall();
    extensions.finish(0);
    queue.runPending();
    EXPECT_FALSE(about.showUninstallConfirm());
    EXPECT_FALSE(daemonMgr.isInstalled());
    EXPECT_FALSE(sysExtMgr.isLoaded());
    const QStringList lines = takeLog();
    EXPECT_TRUE(lines.contains("系統組件已卸載（Daemon + System Extension）"));
    EXPECT_EQ(application.terminations, 0);
}

} // namespace tamsel
