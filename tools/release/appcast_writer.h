#pragma once

#include "platform/linux/updater/appcast.h"

namespace tamsel {

/// The entries as an RSS 2.0 feed that parseAppcast() reads back as they were.
QByteArray writeAppcast(const QList<AppcastEntry>& entries);

} // namespace tamsel
