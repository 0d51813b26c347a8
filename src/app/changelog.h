#pragma once

#include <QString>

namespace tamsel {

class Bundle;

/// The newest entry of a change log: the lines with something on them below its first heading
/// ("## ..."), up to the next one.
QString newestChangelogEntry(const QString& changelog);

/// That of the bundle's change log in the user's language, or in English; empty when there is none
/// that can be read as text.
QString loadLatestChangelog(const Bundle& bundle);

/// The bundle's whole change log in the user's first language, or in English; empty when there is
/// none that can be read as text.
QString loadChangelog(const Bundle& bundle);

} // namespace tamsel
