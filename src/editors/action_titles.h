#pragma once

#include "records/records.h"

#include <QString>

namespace tamsel {

/// What the window calls an action type, translated: "Key Press".
QString actionTitle(ActionType type);

} // namespace tamsel
