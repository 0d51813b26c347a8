#pragma once

#include "platform/linux/updater/appcast.h"

namespace tamsel {

/// The feed as an RSS 2.0 feed that parseAppcast() reads back as it was.
QByteArray writeAppcast(const Appcast& appcast);

} // namespace tamsel
