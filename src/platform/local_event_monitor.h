#pragma once

#include <QFlags>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>

namespace tamsel {

/// The three kinds of key event; they combine to a monitor's mask.
enum class LocalKeyKind : std::uint8_t { keyDown = 1, keyUp = 2, flagsChanged = 4 };
Q_DECLARE_FLAGS(LocalKeyKinds, LocalKeyKind)
Q_DECLARE_OPERATORS_FOR_FLAGS(LocalKeyKinds)
inline constexpr LocalKeyKinds allLocalKeyKinds{LocalKeyKind::keyDown, LocalKeyKind::keyUp,
                                                LocalKeyKind::flagsChanged};

/// Bits of a modifier flags word. A sided bit is set together with its unsided one; the unsided
/// one stands alone when the modifier comes from a key that was not seen going down. The bit of
/// Caps Lock tells that the key is held: the lock's own state is not reported.
namespace ModifierFlags {
inline constexpr std::uint32_t capsLock = 0x10000;
inline constexpr std::uint32_t shift = 0x20000;
inline constexpr std::uint32_t control = 0x40000;
inline constexpr std::uint32_t option = 0x80000;
inline constexpr std::uint32_t command = 0x100000;
inline constexpr std::uint32_t fn = 0x800000;

inline constexpr std::uint32_t leftControl = 0x1;
inline constexpr std::uint32_t leftShift = 0x2;
inline constexpr std::uint32_t rightShift = 0x4;
inline constexpr std::uint32_t leftCommand = 0x8;
inline constexpr std::uint32_t rightCommand = 0x10;
inline constexpr std::uint32_t leftOption = 0x20;
inline constexpr std::uint32_t rightOption = 0x40;
inline constexpr std::uint32_t rightControl = 0x2000;
} // namespace ModifierFlags

/// What holds the keyboard focus in the window that a key goes to.
enum class FocusKind : std::uint8_t {
    none,
    other,     ///< a button, a list, the window itself
    textInput, ///< wants the characters that are typed
    popup,     ///< a menu, a popover or a dialog; also while a modal one is open over the focus
};

/// One key event of the application's own windows.
struct LocalKeyEvent {
    enum class CodeKind : std::uint8_t {
        virtualKey, ///< the platform's virtual key code; the catalogue translates it
        hidUsage, ///< a code of KeyCodes already: a key that has no virtual key code. 0 stands for
                  ///< a key that the catalogue lacks
    };

    /// flagsChanged for every modifier key and Caps Lock, pressed or released.
    LocalKeyKind kind = LocalKeyKind::keyDown;
    CodeKind codeKind = CodeKind::virtualKey;
    std::uint16_t keyCode = 0;
    std::uint32_t modifierFlags = 0; ///< after the event
    bool isARepeat = false;          ///< of a held key; only key-down events repeat
    FocusKind focus = FocusKind::none;
    /// The key's text as if no modifier but Shift were held; empty for modifier keys.
    QString charactersIgnoringModifiers = {};
};

/// An installed monitor; destroying it removes it.
class LocalEventMonitor {
public:
    virtual ~LocalEventMonitor() = default;
};

/// Key events on their way to the application's own windows. Main thread.
class LocalEvents {
public:
    enum class Verdict : std::uint8_t { pass, swallow };
    using Handler = std::function<Verdict(const LocalKeyEvent&)>;

    virtual ~LocalEvents() = default;

    /// Asks `handler` about every event of the kinds in `mask`, before the windows get it. Newer
    /// monitors are asked first; what one swallows reaches no older one and nothing else in the
    /// application, shortcuts included, and neither do a swallowed press's repetitions (nobody is
    /// asked about them) and its release, even when the monitor has gone meanwhile. A handler may
    /// add monitors, which are asked from the next event on, and remove any, also its own. The
    /// monitor may outlive this object.
    [[nodiscard]] virtual std::unique_ptr<LocalEventMonitor> addMonitor(LocalKeyKinds mask,
                                                                        Handler handler) = 0;
};

} // namespace tamsel
