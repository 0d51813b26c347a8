#pragma once

#include "base/error.h"

#include <QByteArray>
#include <QDateTime>
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
    QString edSignature;      ///< of the archive, base64
    QByteArray sha256;        ///< of the archive, 32 bytes; empty: not announced

    bool operator==(const AppcastEntry&) const = default;
};

/// A feed: its entries, and what tells a fresh one from an old one.
struct Appcast {
    QList<AppcastEntry> entries;
    quint64 sequence = 0; ///< goes up by one with each feed; 0: not there
    QDateTime date;       ///< UTC, as `expires`, the day from which nobody should go by it
    QDateTime expires;

    bool operator==(const Appcast&) const = default;
};

/// The XML namespaces of an appcast's usual names and of those that only this feed has, which its
/// readers and writers agree on.
inline constexpr QStringView appcastNamespace =
    u"http://www.andymatuschak.org/xml-namespaces/sparkle";
inline constexpr QStringView ownNamespace = u"https://tamsel.app/xml/updates";

/// Reads an appcast: an RSS 2.0 feed whose items carry an enclosure with the archive's address,
/// length and signature; version, short version and the requirements stand in the item or in the
/// enclosure. Refuses what is not XML, not a feed, or has a document type (so that no entity is
/// ever expanded), more than 1,000 items, and elements that are nested or furnished as those of no
/// feed are: the time that it takes goes up with the length. Texts are cut and cleaned; an entry
/// whose version would have to be has none. Any thread.
Result<Appcast> parseAppcast(const QByteArray& xml);

} // namespace tamsel
