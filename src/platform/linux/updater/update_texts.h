#pragma once

#include "platform/linux/updater/archive_unpacker.h"
#include "platform/linux/updater/secure_fetch.h"
#include "platform/linux/updater/signed_feed.h"
#include "platform/software_updater.h"

namespace tamsel::update_texts {

/// The updater's errors: its own codes in its own domain, each with a sentence for the user.
UpdaterError noUpdate();
UpdaterError notSetUp(const QString& reason);
/// Of a feed that could not be fetched, read or used.
UpdaterError feedNotFetched(const FetchError& error);
UpdaterError feedNotTaken(const FeedError& error);
UpdaterError copyNotReplaceable(const QString& reason);
UpdaterError noPlace(const QString& reason);
/// Of the archive.
UpdaterError notDownloaded(const FetchError& error);
UpdaterError wrongLength();
UpdaterError wrongSignature();
UpdaterError notUnpacked(const UnpackError& error);
UpdaterError wrongDigest();
UpdaterError wrongContents();
UpdaterError notUsable(const QString& reason);
/// Of the exchange.
UpdaterError notInstalled(const QString& reason);
UpdaterError didNotStart(const QString& version);

/// For a receiver that ran out of disk.
QString noRoom();

} // namespace tamsel::update_texts
