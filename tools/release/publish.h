#pragma once

#include "base/error.h"

#include <QString>

namespace tamsel {

/// The feed that the maker changes.
struct FeedFile {
    QString path;    ///< made when it isn't there
    QString keyFile; ///< of makeKeyFile(); what the feed is signed with
    int days = 60;   ///< after which copies go by it no more
};

/// One release, as its maker announces it.
struct Release {
    QString archive;
    QString url; ///< where the archive will be
    QString title;
    QString minimumSystem; ///< a kernel release; empty: any
    QString hardware;      ///< processors with commas between; empty: any
};

/// Signs the archive and puts its entry at the top of the feed. Fails when the copies that are to
/// take it would refuse it (checkRelease()), when they could not be updated by this key, or when it
/// is not newer than every version in the feed. The feed is replaced in one step or stays as it
/// was.
Result<QString> publish(const Release& release, const FeedFile& feed);

/// The feed with a later end, and nothing else new.
Result<QString> refresh(const FeedFile& feed);

enum class KeyChange { announce, revoke };
/// Lets the feed's list of keys have one more or one less, in the name of the offline key. The feed
/// must be signed by a key of the new list. Returns the list, for "QLKeyList" of the next release.
Result<QString> changeKeys(KeyChange change, const QString& publicKey,
                           const QString& offlineKeyFile, const FeedFile& feed);

/// Puts into a copy that is about to be packed the list of what belongs to it.
Result<QString> writeContents(const QString& folder);

} // namespace tamsel
