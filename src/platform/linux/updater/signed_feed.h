#pragma once

#include "platform/linux/updater/appcast.h"
#include "platform/linux/updater/key_list.h"

#include <QDateTime>

namespace tamsel {

/// What a copy knows of its feed from before, so that nobody can show it less than that.
struct FeedMemory {
    KeyList keys;         ///< the newest list of keys
    quint64 sequence = 0; ///< of the newest feed under these keys

    /// Of the bundle's keys and what `kept` says, a text of this type's; what can't be read in it,
    /// or is older than the bundle, is as if it weren't there.
    static FeedMemory of(const BundleKeys& bundle, const QString& kept);
    QString text() const;
};

/// A feed that has been found genuine, and what to remember of it.
struct GenuineFeed {
    Appcast appcast;
    FeedMemory memory;
};

enum class FeedFault {
    forged, ///< not signed, or by a key that is not in force
    older,  ///< than one that was seen before
    expired,
    malformed,
};

struct FeedError {
    FeedFault fault;
    QString detail; ///< of `malformed` the reason, of `expired` the day
};

/// Reads a feed as it came from the network. Nothing of it is looked into before its signature, by
/// a key of the newest list, is found right; a list that the feed brings counts when the offline
/// key has signed it. Any thread.
tl::expected<GenuineFeed, FeedError> openFeed(const QByteArray& bytes, const FeedMemory& memory,
                                              const QString& offlineKey, const QDateTime& now);

/// A feed of the maker's own, which nobody has to vouch for: what is in it, and its list of keys.
struct OwnFeed {
    Appcast appcast;
    std::optional<KeyList> keys;
};
Result<OwnFeed> readOwnFeed(const QByteArray& bytes);

/// The feed's bytes with the list of keys, if it has a number, and the signature.
Result<QByteArray> sealFeed(const Appcast& appcast, const KeyList& keys, const QString& secretKey);

} // namespace tamsel
