#pragma once

#include "platform/local_event_monitor.h"

class QWindow;

namespace tamsel {

/// What holds the keyboard focus in `window`. Text input is an object that takes input-method text,
/// a text item (also a read-only one), or any that has a true property `capturesText`. A popup is
/// what lies on the overlay of Qt Quick's popups: menus, popovers, dialogs.
FocusKind focusKindIn(const QWindow& window);

} // namespace tamsel
