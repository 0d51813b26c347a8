#pragma once

#include "platform/local_event_monitor.h"

#include <QKeyEvent>

namespace tamsel {

/// The pressed key as a code of KeyCodes, 0 for one that the catalogue lacks. Told by the kernel's
/// code behind the native scan code (that + 8, on X11 and Wayland), so that sides and layouts do
/// not matter; an event without one (made by a program) by its Qt::Key: letters, digits, function
/// and editing keys, and modifiers as the left ones.
std::uint32_t usageOf(const QKeyEvent& event);

/// Names the key in `out`: by its virtual key code where it has one.
void identify(std::uint32_t usage, LocalKeyEvent& out);

/// The event's text as if no modifier but Shift were held. AltGr's third level shows through.
QString textIgnoringModifiers(const QKeyEvent& event);

} // namespace tamsel
