#pragma once

#include "base/error.h"

#include <cstdint>
#include <string>

namespace tamsel {

/// What the user last told the daemon to do.
enum class Order : std::uint8_t { start, stop };

/// Keeps the last order across restarts.
class OrderMemory {
public:
    virtual ~OrderMemory() = default;

    /// Order::start when nothing was saved or what was saved cannot be read.
    virtual Order load() const = 0;
    virtual Result<void> save(Order order) = 0;
};

/// The order as a one-word file "last-order" in a folder that is made (0700) when first needed.
/// A reader sees the old file or the new one whole, also after a power failure.
class FileOrderMemory final : public OrderMemory {
public:
    explicit FileOrderMemory(std::string folder) : m_folder(std::move(folder)) {}

    Order load() const override;
    Result<void> save(Order order) override;

private:
    std::string file() const { return m_folder + "/last-order"; }

    std::string m_folder;
};

/// $XDG_STATE_HOME/tamsel, else ~/.local/state/tamsel; fails when the user has no home.
Result<std::string> defaultStateFolder();

} // namespace tamsel
