#pragma once

#include <QString>

#include <atomic>
#include <cstdint>
#include <tl/expected.hpp>

namespace tamsel {

enum class UnpackFault {
    malformed, ///< not an archive, cut off, or of a kind that is not read here
    unsafe,    ///< would write or point outside of the folder, or is no file, folder or link
    tooLarge,
    noRoom, ///< the disk is full
    failed, ///< the disk would not take it for another reason
    givenUp,
};

struct UnpackError {
    UnpackFault fault;
    QString detail; ///< for a log: the entry, the reason
};

struct UnpackLimits {
    std::uint64_t bytes = std::uint64_t{512} * 1024 * 1024; ///< of all files, as they unpack
    std::uint64_t entries = 20'000;
};

/// Unpacks a tar archive (plain, gzip, xz or zstd) into a folder that is empty and private. Nobody
/// else's files are touched whatever the archive says: paths are relative, without "..", of a
/// length that any place can take; links are symbolic and lead to a place inside; folders are 0755,
/// files 0755 or 0644. What is unpacked when it fails stays for the caller to remove. Any thread.
tl::expected<void, UnpackError> unpackArchive(const QString& archive, const QString& folder,
                                              const UnpackLimits& limits,
                                              const std::atomic<bool>& giveUp);

/// A link at `path` leads to a place inside the first folder of `path`, which is the copy and will
/// stand elsewhere: a relative target that only begins with "..".
bool isInside(std::string_view path, std::string_view target);

} // namespace tamsel
