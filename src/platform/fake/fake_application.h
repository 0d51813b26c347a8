#pragma once

#include "platform/app_window.h"
#include "platform/application.h"
#include "platform/machine_report.h"
#include "platform/settings_panes.h"

#include <QStringList>

#include <memory>

namespace tamsel {

/// A window that writes down how often it was brought to the front.
class FakeWindow final : public AppWindow {
public:
    bool visible = false;
    int shown = 0;

    bool isVisible() const override { return visible; }
    void makeKeyAndOrderFront() override {
        visible = true;
        ++shown;
    }
};

/// Counts how often it was asked to end, and writes down the rest.
class FakeApplication final : public Application {
public:
    int terminations = 0;
    ActivationPolicy policy = ActivationPolicy::regular;
    bool canMakeWindow = true;
    bool hidesWindows = true; ///< false: another window stays
    std::unique_ptr<FakeWindow> window;
    QStringList calls; ///< what happened to windows and policy, in order

    void terminate() override { ++terminations; }
    ActivationPolicy activationPolicy() const override { return policy; }
    void setActivationPolicy(ActivationPolicy next) override {
        policy = next;
        calls << (policy == ActivationPolicy::regular ? QStringLiteral("regular")
                                                      : QStringLiteral("accessory"));
    }
    void activate() override { calls << QStringLiteral("activate"); }
    AppWindow* makeMainWindow() override {
        calls << QStringLiteral("make");
        if (canMakeWindow)
            window = std::make_unique<FakeWindow>();
        return window.get();
    }
    bool hasVisibleWindows() const override { return !hidesWindows || (window && window->visible); }
    void orderOutWindows() override {
        calls << QStringLiteral("order out");
        if (window)
            window->visible = false;
    }
    QStringList takeCalls() { return std::exchange(calls, {}); }
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
