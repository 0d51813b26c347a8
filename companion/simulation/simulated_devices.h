#pragma once

#include "base/error.h"
#include "base/unique_fd.h"
#include "core/virtual_device.h"
#include "records/records.h"
#include "records/seen_device.h"
#include "simulation/simulated_line.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tamsel {

/// The virtual device of a simulation: appends to DIR/out, one "USAGE down|up" a line, and
/// "action TYPE VALUE" for an action that fired, VALUE as a JSON string in ASCII.
class SimulatedOutput final : public VirtualDevice {
public:
    static Result<SimulatedOutput> open(const std::string& folder);

    Result<void> write(std::span<const engine::OutputEvent> events) override;
    Result<void> record(const ShortcutAction& action) override;

private:
    explicit SimulatedOutput(UniqueFd file) : m_file(std::move(file)) {}

    Result<void> append(std::string_view text);

    UniqueFd m_file;
    std::string m_text;
};

/// The physical devices of a simulation: DIR/devices.json says which there are, the FIFO DIR/in
/// (made when missing) what they do. Writers may come and go.
class SimulatedDevices final {
public:
    static Result<SimulatedDevices> open(const std::string& folder);

    const std::vector<SeenDeviceInfo>& devices() const { return m_devices; }

    /// The descriptor to wait on for reading.
    int fd() const { return m_in.get(); }

    /// Reads what is there, at most one buffer full, without blocking. `take` gets each good line
    /// in order, `complain` one error for each bad one, its place the line's number since the
    /// start. Fails when the FIFO cannot be read any more.
    Result<void> read(const std::function<void(const SimulatedLine&)>& take,
                      const std::function<void(const Error&)>& complain);

private:
    SimulatedDevices(UniqueFd in, std::vector<SeenDeviceInfo> devices)
        : m_in(std::move(in)), m_devices(std::move(devices)) {}

    UniqueFd m_in;
    std::vector<SeenDeviceInfo> m_devices;
    LineSplitter m_splitter;
    std::uint64_t m_lineNumber = 0;
    engine::EngineTime m_now{0};
};

} // namespace tamsel
