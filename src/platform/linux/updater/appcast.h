#pragma once

#include "base/error.h"

#include <QList>
#include <QString>
#include <QUrl>

#include <cstdint>

namespace tamsel {

/// One version that a feed offers, as the feed has it. Texts are empty when they are not there.
struct AppcastEntry {
    QString title;
    QString version;      ///< the build, which the order of versions goes by
    QString shortVersion; ///< for people
    QString minimumSystem;
    QString maximumSystem;
    QString hardware; ///< the processors it runs on, with commas between
    QString channel;  ///< an entry of a channel is for those who asked for it
    QString os;
    QUrl url;                 ///< of the archive
    std::uint64_t length = 0; ///< of the archive, in bytes; 0: not announced
    QString edSignature;      ///< base64

    bool operator==(const AppcastEntry&) const = default;
};

/// The XML namespace of an appcast's own names, which its readers and writers agree on.
inline constexpr QStringView appcastNamespace =
    u"http://www.andymatuschak.org/xml-namespaces/sparkle";

/// Reads an appcast: an RSS 2.0 feed whose items carry an enclosure with the archive's address,
/// length and signature; version, short version and the requirements stand in the item or in the
/// enclosure. Refuses what is not XML, not a feed, or has a document type (so that no entity is
/// ever expanded), and more than 1,000 items.
Result<QList<AppcastEntry>> parseAppcast(const QByteArray& xml);

} // namespace tamsel
