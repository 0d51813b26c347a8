#pragma once

#include "base/error.h"

#include <QString>

namespace tamsel {

/// One release, as its maker announces it.
struct Release {
    QString keyFile; ///< of makeKeyFile()
    QString archive;
    QString url;  ///< where the archive will be
    QString feed; ///< made when it isn't there
    QString title;
    QString minimumSystem; ///< a kernel release; empty: any
    QString hardware;      ///< processors with commas between; empty: any
};

/// Makes a key pair: the secret half in a new file that is its owner's alone. The public half is
/// for "QLPublicKey" of the copies.
Result<QString> makeKeyFile(const QString& file);
/// The public half of the key in a file.
Result<QString> publicKeyIn(const QString& file);

/// Signs the archive and puts its entry at the top of the feed. Fails when the archive would be
/// refused by the copies that are to take it: not unpackable, without a copy, for another key, or
/// not newer than every version in the feed. The feed is replaced in one step or stays as it was.
Result<QString> publish(const Release& release);

} // namespace tamsel
