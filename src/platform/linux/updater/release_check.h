#pragma once

#include "base/error.h"

#include <QStringList>

namespace tamsel {

struct BundleKeys;

/// What an unpacked copy says of itself.
struct ReleaseFacts {
    QString folder; ///< of the copy
    QString version;
    QString shortVersion;
};

/// Whether the copy in an unpacked archive may be put in place of another one, for its maker before
/// it is announced and for each copy before it is installed: it stands alone in `tree`, is whole,
/// holds nothing but what it lists as its own (so that it can be replaced in its turn), comes with
/// a relauncher, a feed and the keys that its maker still has: the same offline key, and one of
/// `trusted` at least. Any thread.
Result<ReleaseFacts> checkRelease(const QString& tree, const QStringList& trusted,
                                  const QString& offlineKey);

} // namespace tamsel
