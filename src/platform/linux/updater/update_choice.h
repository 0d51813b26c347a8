#pragma once

#include "platform/linux/updater/appcast.h"

#include <optional>

namespace tamsel {

/// What decides which entry of a feed is for this copy.
struct UpdateWish {
    QString version;        ///< of this copy
    QString system;         ///< the kernel's release, such as "6.1.0-28-amd64"
    QString processor;      ///< such as "x86_64"
    QString skippedVersion; ///< not wanted; empty: none
};

/// The kernel and the processor of this machine.
QString thisSystem();
QString thisProcessor();

/// The longest archive that is fetched.
inline constexpr std::uint64_t maxArchive = std::uint64_t{512} * 1024 * 1024;

/// The newest entry that is complete (an archive's address, length, digest and signature), newer
/// than this copy, of no channel, for Linux or for any system, and runs on this machine; minimum
/// and maximum system are kernel releases. None: this copy is up to date as far as it can be.
std::optional<AppcastEntry> chooseUpdate(const QList<AppcastEntry>& entries,
                                         const UpdateWish& wish);

} // namespace tamsel
