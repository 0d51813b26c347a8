#include "../support/lifecycle_fixture.h"

#include "app/settings_guide_vm.h"

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
    const auto lacking = with([](auto& m) { m.input = noAccess; });
    auto lackingUnit = lacking;
    lackingUnit.hasUnit = true;
    lackingUnit.daemonUser = "tamsel";
    const auto pane = GuidePane::extensions;
    const auto input = GuidePane::inputMonitoring;
    const auto items = GuidePane::loginItems;
    constexpr auto none = GuideAction::none;
    constexpr auto loadDriver = GuideAction::loadDriver;
    constexpr auto registers = GuideAction::registerServices;
    const QString modprobe = "sudo modprobe uinput";
    const struct {
        GuidePane pane;
        MachineReport machine;
        ServiceFacts service;
        QString toDo;
        GuideAction action;
    } cases[] = {
        {pane, fine, {}, "", none},
        {pane,
         with([](auto& m) { m.kernelHasDriver = false, m.uinput = noNode; }),
         {},
         modprobe,
         none},
        {pane, with([](auto& m) { m.uinput = noNode; }), {}, modprobe + "; " + grant, loadDriver},
        {pane, with([](auto& m) { m.uinput = noAccess; }), {}, grant, loadDriver},
        {pane, with([](auto& m) { m.uinput = noAccess, m.helper.clear(); }), {}, "helper", none},
        {pane, with([](auto& m) { m.uinput = notInGroupYet; }), {}, "login", none},
        {input, fine, {}, "", none},
        {input, with([](auto& m) { m.input = noNode; }), {}, "devices", none},
        {input, lacking, {}, "sudo usermod -aG input mira; login", none},
        {input,
         lackingUnit,
         {},
         "sudo usermod -aG input tamsel; sudo systemctl restart app.tamsel.daemon.service",
         none},
        {input, with([](auto& m) { m.input = notInGroupYet; }), {}, "login", none},
        {items, fine, {true, false}, "", none},
        {items, fine, {false, false}, "", registers},
        {items,
         with([](auto& m) { m.hasUnit = true; }),
         {false, true},
         "approve; sudo systemctl enable --now app.tamsel.daemon.service; systemctl --user enable "
         "--now app.tamsel.agent.service",
         registers},
    };
    for (const auto& each : cases) {
        const SettingsGuide guide = settingsGuide(each.pane, each.machine, each.service);
        EXPECT_EQ(toDo(guide).join("; "), each.toDo);
        EXPECT_EQ(guide.action, each.action) << each.toDo.toStdString();
        const bool isFine = std::all_of(guide.findings.begin(), guide.findings.end(),
                                        [](const GuideFinding& finding) { return finding.ok; });
        EXPECT_EQ(isFine, each.toDo.isEmpty() && each.action == none);
    }
    EXPECT_EQ(shellQuoted("a'b; rm"), "'a'\\''b; rm'");
    EXPECT_EQ(shellQuoted(""), "''");
}

struct SettingsGuideVMTest : LifecycleFixture {
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
