#pragma once

#include "core/core.h"

namespace tamsel {

/// Simulated devices are nobody else's: each is seized and freed at once.
class ObedientDevices final : public DeviceControl {
public:
    explicit ObedientDevices(Core& core) : m_core(core) { core.setDeviceControl(this); }

    void want(engine::DeviceIndex device, engine::Seizure seizure) override {
        if (seizure == engine::Seizure::seized)
            m_core.seized(device, KeysThen::asSeen);
        else
            m_core.freed(device);
    }
    void tryAgain() override {}

private:
    Core& m_core;
};

} // namespace tamsel
