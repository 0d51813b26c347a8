#pragma once

#include "base/error.h"
#include "base/unique_fd.h"

#include <cstdint>
#include <libevdev/libevdev.h>
#include <linux/input.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tamsel {

/// What a virtual device is to be. Codes: linux/input-event-codes.h.
struct VirtualRecipe {
    struct Axis {
        std::uint16_t code = 0;
        input_absinfo range{};
    };

    std::string name;
    input_id id{};
    std::vector<std::pair<std::uint16_t, std::uint16_t>> codes; ///< type and code, without axes
    std::vector<Axis> axes;                                     ///< absolute ones
    std::vector<std::uint16_t> properties;
    bool hasRepeat = false;

    bool has(std::uint16_t type, std::uint16_t code) const;
};

/// Every key that the kernel names and no button, the lights, and repetition by the kernel.
/// Readers take a device of the PS/2 port for one that is built in.
enum class KeyboardPlace : std::uint8_t { builtIn, external };
VirtualRecipe keyboardRecipe(KeyboardPlace place);
/// The sixteen buttons that a mouse can have and the usual axes.
VirtualRecipe pointerRecipe();
/// A stand-in for the pointing half of a device: the same to its readers in all but its `phys`.
VirtualRecipe cloneRecipe(const libevdev* source);

/// A device that the kernel has made for us through uinput; it goes with this object, which takes
/// tens of milliseconds. Events are gathered into a frame and written by sync().
class UinputDevice final {
public:
    static Result<UinputDevice> make(const VirtualRecipe& recipe);

    int fd() const { return m_fd.get(); }
    /// The kernel's name of the device, "input7".
    const std::string& inputName() const { return m_inputName; }
    bool has(std::uint16_t type, std::uint16_t code) const { return m_recipe.has(type, code); }

    /// A key that changes twice makes two frames: some readers look at a frame's end only.
    void add(std::uint16_t type, std::uint16_t code, std::int32_t value);
    bool hasPending() const { return !m_frame.empty(); }
    /// Ends the frame, without blocking; nothing when it is empty.
    Result<void> sync();

private:
    UinputDevice(UniqueFd fd, VirtualRecipe recipe)
        : m_fd(std::move(fd)), m_recipe(std::move(recipe)) {}

    UniqueFd m_fd;
    VirtualRecipe m_recipe;
    std::string m_inputName;
    std::vector<input_event> m_frame; ///< roomy from the start
    std::size_t m_frameBegin = 0;     ///< of the frame that is not ended yet
};

} // namespace tamsel
