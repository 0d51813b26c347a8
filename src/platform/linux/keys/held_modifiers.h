#pragma once

#include <QKeyEvent>

#include <cstdint>
#include <map>
#include <vector>

namespace tamsel {

/// Which modifier keys are held, by side. The toolkit reports modifiers without sides, and releases
/// that happen while another window has the keyboard not at all, so this follows the keys and drops
/// the ones that the toolkit's modifiers show to be up. Keys are codes of KeyCodes.
class HeldModifiers final {
public:
    static bool isModifier(std::uint32_t usage);

    void press(std::uint32_t usage, const QKeyEvent& event);
    void release(std::uint32_t usage) { m_held.erase(usage); }

    /// Forgets and returns the keys that are up by the event's modifiers. For a modifier's own
    /// event its kind is left alone: with one Shift held, the other one's press reads as no Shift.
    std::vector<std::uint32_t> dropStale(const QKeyEvent& event);
    std::vector<std::uint32_t> dropAll();

    /// The flags of the held keys.
    std::uint32_t flags() const;
    /// The same with modifiers that the event reports on top, without sides.
    std::uint32_t flags(const QKeyEvent& event) const;

private:
    /// With the toolkit's modifiers of which one is set as long as the key is held; none when that
    /// is not known.
    std::map<std::uint32_t, Qt::KeyboardModifiers> m_held;
};

} // namespace tamsel
