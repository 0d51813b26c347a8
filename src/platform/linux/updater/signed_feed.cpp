#include "platform/linux/updater/signed_feed.h"

#include "platform/linux/updater/appcast_writer.h"
#include "platform/linux/updater/archive_signature.h"

namespace tamsel {

namespace {

const QByteArray keysMark = "<!-- tamsel-keys ";
const QByteArray signatureMark = "<!-- tamsel-signature ";
const QByteArray markEnd = " -->\n";

/// What stands between a mark and its end in the last line of `text`, which is cut off; nothing,
/// and nothing is cut off, when it is another line.
std::optional<QString> takeLastLine(QByteArray& text, const QByteArray& mark) {
    const qsizetype begin = text.lastIndexOf('\n', -2) + 1;
    const QByteArray line = text.mid(begin);
    if (!line.startsWith(mark) || !line.endsWith(markEnd))
        return std::nullopt;
    text.truncate(begin);
    return QString::fromLatin1(line.mid(mark.size()).chopped(markEnd.size()));
}

/// What is signed; the beginning keeps it apart from everything else that a key may sign.
QByteArray statement(const QByteArray& feed) {
    return "tamsel-feed\n" + feed;
}

tl::unexpected<FeedError> wrong(FeedFault fault, const QString& detail = {}) {
    return tl::unexpected(FeedError{fault, detail});
}

} // namespace

FeedMemory FeedMemory::of(const BundleKeys& bundle, const QString& kept) {
    FeedMemory memory{bundle.list, 0};
    const qsizetype blank = kept.indexOf(u' ');
    const quint64 sequence = kept.left(blank).toULongLong();
    const QString list = kept.mid(blank + 1);
    // The bundle's own keys have no number: what is kept names them.
    if (list == memory.keys.text())
        memory.sequence = sequence;
    else if (const auto keys = KeyList::read(list, bundle.offlineKey);
             keys && keys->number > memory.keys.number)
        memory = {*keys, sequence};
    return memory;
}

QString FeedMemory::text() const {
    return QString::number(sequence) + u' ' + keys.text();
}

tl::expected<GenuineFeed, FeedError> openFeed(const QByteArray& bytes, const FeedMemory& memory,
                                              const QString& offlineKey, const QDateTime& now) {
    GenuineFeed feed{{}, memory};
    QByteArray xml = bytes;
    const auto signature = takeLastLine(xml, signatureMark);
    if (!signature)
        return wrong(FeedFault::forged);
    const QByteArray signedPart = xml;
    if (const auto text = takeLastLine(xml, keysMark)) {
        const auto list = KeyList::read(*text, offlineKey);
        // Under other keys the feeds are counted anew: a stolen key may have counted up to the end.
        if (list && list->number > memory.keys.number)
            feed.memory = {*list, 0};
    }
    if (!archive_signature::fits(statement(signedPart), *signature, feed.memory.keys.keys))
        return wrong(FeedFault::forged);
    auto appcast = parseAppcast(xml);
    if (!appcast)
        return wrong(FeedFault::malformed, QString::fromStdString(appcast.error().description()));
    feed.appcast = std::move(*appcast);
    if (feed.appcast.sequence == 0 || !feed.appcast.expires.isValid())
        return wrong(FeedFault::malformed, QStringLiteral("it has no number or no end"));
    if (feed.appcast.sequence < feed.memory.sequence)
        return wrong(FeedFault::older);
    if (feed.appcast.expires < now)
        return wrong(FeedFault::expired, feed.appcast.expires.date().toString(Qt::ISODate));
    feed.memory.sequence = feed.appcast.sequence;
    return feed;
}

Result<OwnFeed> readOwnFeed(const QByteArray& bytes) {
    QByteArray xml = bytes;
    takeLastLine(xml, signatureMark);
    const auto list = takeLastLine(xml, keysMark);
    return parseAppcast(xml).map([&list](const Appcast& appcast) {
        return OwnFeed{appcast, list ? KeyList::parse(*list) : std::nullopt};
    });
}

Result<QByteArray> sealFeed(const Appcast& appcast, const KeyList& keys, const QString& secretKey) {
    QByteArray text = writeAppcast(appcast);
    if (keys.number > 0)
        text += keysMark + keys.text().toLatin1() + markEnd;
    return archive_signature::signBytes(statement(text), secretKey)
        .map([&text](const QString& signature) {
            return text + signatureMark + signature.toLatin1() + markEnd;
        });
}

} // namespace tamsel
