#pragma once

#include "platform/linux/driver/uinput_state.h"
#include "platform/machine_report.h"

#include <QObject>

namespace tamsel {

class BackgroundQueue;
class MainQueue;

/// Looks at the nodes under /dev, at the kernel and at the group database.
class LinuxMachine final : public QObject, public MachineInspector {
public:
    /// `places` as the driver has them; with a daemon's group there it is the account of that name
    /// whose access counts.
    LinuxMachine(BackgroundQueue& background, MainQueue& queue, UinputPlaces places);

    void inspect(std::function<void(const MachineReport&)> done) override;

private:
    BackgroundQueue& m_background;
    MainQueue& m_queue;
    UinputPlaces m_places;
};

/// What inspect() finds. Asks the group database: background threads.
MachineReport inspectMachine(const UinputPlaces& places);

} // namespace tamsel
