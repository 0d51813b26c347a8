#pragma once

#include "platform/application.h"
#include "platform/machine_report.h"
#include "platform/settings_panes.h"

#include <QStringList>

namespace tamsel {

/// Counts how often it was asked to end.
class FakeApplication final : public Application {
public:
    int terminations = 0;

    void terminate() override { ++terminations; }
};

/// Writes down which panes were opened.
class FakeSettingsPanes final : public SettingsPanes {
public:
    int version = 15;
    QStringList opened;

    int systemVersion() const override { return version; }
    void open(QStringView pane) override { opened << pane.toString(); }
    void openLoginItems() override { opened << QStringLiteral("login items"); }
};

/// A machine as the test describes it.
class FakeMachine final : public MachineInspector {
public:
    MachineReport report;
    int inspections = 0;

    void inspect(std::function<void(const MachineReport&)> done) override {
        ++inspections;
        done(report);
    }
};

} // namespace tamsel
