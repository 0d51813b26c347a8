#include "platform/linux/keys/key_identity.h"

#include "keys/evdev_codes.h"
#include "keys/key_codes.h"

#include <utility>

namespace tamsel {

namespace {

constexpr quint32 scanCodeOffset = 8;

constexpr std::pair<int, std::uint32_t> usagesOfKeys[] = {
    {Qt::Key_0, 39},        {Qt::Key_Return, 40}, {Qt::Key_Escape, 41},   {Qt::Key_Backspace, 42},
    {Qt::Key_Tab, 43},      {Qt::Key_Space, 44},  {Qt::Key_CapsLock, 57}, {Qt::Key_Insert, 73},
    {Qt::Key_Home, 74},     {Qt::Key_PageUp, 75}, {Qt::Key_Delete, 76},   {Qt::Key_End, 77},
    {Qt::Key_PageDown, 78}, {Qt::Key_Right, 79},  {Qt::Key_Left, 80},     {Qt::Key_Down, 81},
    {Qt::Key_Up, 82},       {Qt::Key_Enter, 88},  {Qt::Key_Control, 224}, {Qt::Key_Shift, 225},
    {Qt::Key_Alt, 226},     {Qt::Key_Meta, 227},  {Qt::Key_AltGr, 230},   {Qt::Key_Backtab, 43}};

struct Run {
    int first;
    int last;
    std::uint32_t usage;
};
constexpr Run runsOfKeys[] = {{Qt::Key_A, Qt::Key_Z, 4},
                              {Qt::Key_1, Qt::Key_9, 30},
                              {Qt::Key_F1, Qt::Key_F12, 58},
                              {Qt::Key_F13, Qt::Key_F24, 104}};

std::uint32_t usageOfKey(int key) {
    for (const Run& run : runsOfKeys) {
        if (key >= run.first && key <= run.last)
            return run.usage + static_cast<std::uint32_t>(key - run.first);
    }
    for (const auto& [candidate, usage] : usagesOfKeys) {
        if (candidate == key)
            return usage;
    }
    return KeyCodes::noKey;
}

} // namespace

std::uint32_t usageOf(const QKeyEvent& event) {
    const quint32 scanCode = event.nativeScanCode();
    if (scanCode <= scanCodeOffset)
        return usageOfKey(event.key());
    const quint32 evdevCode = scanCode - scanCodeOffset;
    return evdevCode > 0xFFFF
               ? KeyCodes::noKey
               : EvdevCodes::toHid(static_cast<std::uint16_t>(evdevCode)).value_or(KeyCodes::noKey);
}

void identify(std::uint32_t usage, LocalKeyEvent& out) {
    const auto virtualKey = KeyCodes::hidToMac(usage);
    out.codeKind =
        virtualKey ? LocalKeyEvent::CodeKind::virtualKey : LocalKeyEvent::CodeKind::hidUsage;
    out.keyCode = virtualKey.value_or(static_cast<std::uint16_t>(usage));
}

QString textIgnoringModifiers(const QKeyEvent& event) {
    constexpr int charactersEnd = 0x110000;
    QString text = event.text();
    // Control turns letters into control characters.
    const bool hasNone = text.isEmpty() || text.front().category() == QChar::Other_Control;
    if (hasNone && event.key() >= Qt::Key_Space && event.key() < charactersEnd) {
        const auto character = static_cast<char32_t>(event.key());
        text = QString::fromUcs4(&character, 1);
    }
    // Key codes are upper-case, and Caps Lock has its hand in the text.
    return event.modifiers().testFlag(Qt::ShiftModifier) ? text.toUpper() : text.toLower();
}

} // namespace tamsel
