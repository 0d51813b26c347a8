#include "../support/logic_fixture.h"

#include "app/settings_guide_vm.h"
#include "daemon/daemon_mgr.h"
#include "driver/system_extension_mgr.h"

namespace tamsel {

using enum NodeAccess;

/// What is to be typed, and the ids of what no command does.
QStringList toDo(const SettingsGuide& guide) {
    QStringList all;
    for (const GuideStep& step : guide.steps)
        all << (step.command.isEmpty() ? step.id : step.command);
    return all;
}

TEST(SettingsGuideTest, NamesWhatThisMachineLacks) {
    MachineReport fine{.daemonUser = "mira",
                       .kernelHasDriver = true,
                       .uinput = ok,
                       .input = ok,
                       .inputGroup = "input",
                       .helper = "/opt/my helper"};
    const auto with = [&](auto change) {
        MachineReport report = fine;
        change(report);
        return report;
    };
    const QString grant = "sudo '/opt/my helper' grant";
    struct Case {
        GuidePane pane;
        MachineReport machine;
        ServiceFacts service;
        QStringList toDo;
        GuideAction action;
    };
    const auto pane = GuidePane::extensions;
    const auto input = GuidePane::inputMonitoring;
    const auto items = GuidePane::loginItems;
    const Case cases[] = {
        {pane, fine, {}, {}, GuideAction::none},
        {pane,
         with([](auto& m) { m.kernelHasDriver = false, m.uinput = noNode; }),
         {},
         {"sudo modprobe uinput"},
         GuideAction::none},
        {pane,
         with([](auto& m) { m.uinput = noNode; }),
         {},
         {"sudo modprobe uinput", grant},
         GuideAction::loadDriver},
        {pane, with([](auto& m) { m.uinput = noAccess; }), {}, {grant}, GuideAction::loadDriver},
        {pane,
         with([](auto& m) { m.uinput = noAccess, m.helper.clear(); }),
         {},
         {"helper"},
         GuideAction::none},
        {pane, with([](auto& m) { m.uinput = notInGroupYet; }), {}, {"login"}, GuideAction::none},
        {input, fine, {}, {}, GuideAction::none},
        {input, with([](auto& m) { m.input = noNode; }), {}, {"devices"}, GuideAction::none},
        {input,
         with([](auto& m) { m.input = noAccess; }),
         {},
         {"sudo usermod -aG input mira", "login"},
         GuideAction::none},
        {input,
         with([](auto& m) { m.input = noAccess, m.hasUnit = true, m.daemonUser = "tamsel"; }),
         {},
         {"sudo usermod -aG input tamsel", "sudo systemctl restart app.tamsel.daemon.service"},
         GuideAction::none},
        {input, with([](auto& m) { m.input = notInGroupYet; }), {}, {"login"}, GuideAction::none},
        {items, fine, {true, false}, {}, GuideAction::none},
        {items, fine, {false, false}, {}, GuideAction::registerServices},
        {items,
         with([](auto& m) { m.hasUnit = true; }),
         {false, true},
         {"approve", "sudo systemctl enable --now app.tamsel.daemon.service",
          "systemctl --user enable --now app.tamsel.agent.service"},
         GuideAction::registerServices},
    };
    for (const Case& each : cases) {
        const SettingsGuide guide = settingsGuide(each.pane, each.machine, each.service);
        EXPECT_EQ(toDo(guide), each.toDo);
        EXPECT_EQ(guide.action, each.action) << each.toDo.join("; ").toStdString();
        const bool isFine = std::all_of(guide.findings.begin(), guide.findings.end(),
                                        [](const GuideFinding& finding) { return finding.ok; });
        EXPECT_EQ(isFine, each.toDo.isEmpty() && each.action == GuideAction::none);
    }
    EXPECT_EQ(shellQuoted("a'b; rm"), "'a'\\''b; rm'");
    EXPECT_EQ(shellQuoted(""), "''");
}

struct SettingsGuideVMTest : LogicFixture {
    DaemonMgr daemonMgr{services, bundle, logger};
    SystemExtensionMgr sysExtMgr{{extensions, processes, background, queue, logger}, client};
    SettingsGuideVM guide{machine, daemonMgr, sysExtMgr, pasteboard};
};

TEST_F(SettingsGuideVMTest, LooksWhenItIsOpenedAndWhenSomethingChanges) {
    machine.report = {.daemonUser = "mira",
                      .kernelHasDriver = true,
                      .uinput = noAccess,
                      .uinputMode = "root:root crw-------",
                      .helper = "/h"};
    sysExtMgr.loadExtension();
    EXPECT_EQ(machine.inspections, 0);
    guide.open(u"x-unknown:");
    EXPECT_FALSE(guide.isOpen());
    guide.open(settingsPane::extensionsBefore15);
    EXPECT_TRUE(guide.isOpen());
    EXPECT_EQ(machine.inspections, 1);
    EXPECT_EQ(guide.findings()[1].text, "mira may not open /dev/uinput (root:root crw-------).");
    EXPECT_EQ(guide.actionTitle(), "Load Extension");
    guide.copy("no such step");
    EXPECT_EQ(pasteboard.contents, std::nullopt);
    guide.copy("grant");
    EXPECT_EQ(pasteboard.contents, "sudo /h grant");
    guide.act();
    EXPECT_EQ(extensions.requests.size(), 2);
    machine.report.uinput = ok;
    extensions.finish(0);
    queue.runPending();
    EXPECT_EQ(guide.actionTitle(), "");
    EXPECT_TRUE(guide.steps().isEmpty());

    guide.openLoginItems();
    EXPECT_EQ(guide.actionTitle(), "Install Service");
    guide.act();
    EXPECT_EQ(services.calls, (QStringList{"register daemon", "register agent"}));
    EXPECT_EQ(guide.actionTitle(), "") << "the daemon runs";
    guide.close();
    const int before = machine.inspections;
    services.daemon->change(ServiceStatus::notRegistered);
    EXPECT_EQ(machine.inspections, before);
}

} // namespace tamsel
