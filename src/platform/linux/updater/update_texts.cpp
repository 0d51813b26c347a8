#include "platform/linux/updater/update_texts.h"

#include <QCoreApplication>

namespace tamsel::update_texts {

namespace {

/// The updater's error codes that its users may know.
enum Code {
    setUpCode = 1,
    parseCode = 1000,
    appcastCode = 1002,
    temporaryFolderCode = 2000,
    downloadCode = 2001,
    unarchivingCode = 3000,
    signatureCode = 3001,
    validationCode = 3002,
    installationCode = 4005,
    relaunchCode = 4004,
};

QString text(const char* source) {
    return QCoreApplication::translate("Updater", source);
}

UpdaterError error(int code, const QString& description) {
    return {updaterErrorDomain.toString(), code, description};
}

} // namespace

UpdaterError noUpdate() {
    return error(updaterNoUpdateCode, text("You are up to date."));
}

UpdaterError notSetUp(const QString& reason) {
    return error(setUpCode, text("Updates are not set up properly: %1").arg(reason));
}

UpdaterError feedNotFetched(const FetchError& fetch) {
    switch (fetch.fault) {
    case FetchFault::timedOut:
        return error(appcastCode, updaterCheckTimedOut.toString());
    case FetchFault::insecure:
        return error(appcastCode, text("The update server's address is not secure."));
    case FetchFault::tooLarge:
        return error(appcastCode, text("The update server's reply is too long."));
    case FetchFault::refused:
        return error(appcastCode, text("The update server refused (status %1).").arg(fetch.detail));
    case FetchFault::network:
    case FetchFault::notTaken:
        break;
    }
    return error(appcastCode, text("The update server can't be reached: %1").arg(fetch.detail));
}

UpdaterError feedNotTaken(const FeedError& feed) {
    switch (feed.fault) {
    case FeedFault::forged:
        return error(appcastCode, text("The update server's list is not signed by the maker."));
    case FeedFault::older:
        return error(appcastCode,
                     text("The update server's list is older than one that was seen before."));
    case FeedFault::expired:
        return error(appcastCode, text("The update server's list has expired on %1. If that is "
                                       "still to come, this computer's clock is wrong.")
                                      .arg(feed.detail));
    case FeedFault::malformed:
        break;
    }
    return error(parseCode, text("The update server's reply can't be read: %1").arg(feed.detail));
}

UpdaterError copyNotReplaceable(const QString& reason) {
    return error(installationCode, text("This copy of Tamsel can't be replaced: %1").arg(reason));
}

UpdaterError noPlace(const QString& reason) {
    return error(temporaryFolderCode,
                 text("There is no place to prepare the update: %1").arg(reason));
}

UpdaterError notDownloaded(const FetchError& fetch) {
    switch (fetch.fault) {
    case FetchFault::timedOut:
        return error(downloadCode, text("The download stopped: the server no longer answers."));
    case FetchFault::insecure:
        return error(downloadCode, text("The update's address is not secure."));
    case FetchFault::tooLarge:
        return wrongLength();
    case FetchFault::refused:
        return error(downloadCode,
                     text("The update can't be downloaded (status %1).").arg(fetch.detail));
    case FetchFault::notTaken:
        return error(downloadCode, text("The update can't be stored: %1").arg(fetch.detail));
    case FetchFault::network:
        break;
    }
    return error(downloadCode, text("The update can't be downloaded: %1").arg(fetch.detail));
}

UpdaterError wrongLength() {
    return error(downloadCode, text("The update is not as long as it was announced."));
}

UpdaterError wrongSignature() {
    return error(signatureCode,
                 text("The update is not signed by its maker. It was not installed."));
}

UpdaterError notUnpacked(const UnpackError& unpack) {
    switch (unpack.fault) {
    case UnpackFault::unsafe:
        return error(unarchivingCode,
                     text("The update would write outside of its folder. It was not installed."));
    case UnpackFault::tooLarge:
        return error(unarchivingCode, text("The update is too large to unpack."));
    case UnpackFault::noRoom:
        return error(unarchivingCode, noRoom());
    case UnpackFault::failed:
        return error(unarchivingCode, text("The update can't be unpacked: %1").arg(unpack.detail));
    case UnpackFault::malformed:
    case UnpackFault::givenUp:
        break;
    }
    return error(unarchivingCode, text("The update's archive can't be read."));
}

UpdaterError wrongDigest() {
    return error(validationCode, text("The update is not the one that was announced."));
}

UpdaterError notUsable(const QString& reason) {
    return error(validationCode, text("The update can't be used: %1").arg(reason));
}

UpdaterError wrongContents() {
    return error(validationCode, text("The update is not the version that was announced."));
}

UpdaterError notInstalled(const QString& reason) {
    return error(installationCode, text("The update can't be installed: %1").arg(reason));
}

UpdaterError didNotStart(const QString& version) {
    return error(relaunchCode,
                 text("Version %1 did not start. The version before it is back.").arg(version));
}

QString noRoom() {
    return text("There is no room left on the disk.");
}

} // namespace tamsel::update_texts
