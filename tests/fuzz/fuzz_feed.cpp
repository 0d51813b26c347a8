#include "platform/linux/updater/appcast_writer.h"
#include "platform/linux/updater/signed_feed.h"
#include "platform/linux/updater/update_choice.h"

#include <cstdlib>

/// Any bytes as a feed whose signature was right, as one that nobody has looked at, as what was
/// kept of one: no entry that is chosen is one that could not be fetched, and texts are short.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tamsel;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (const auto appcast = parseAppcast(bytes)) {
        for (const AppcastEntry& entry : appcast->entries) {
            if (entry.version.size() > 64 || entry.shortVersion.size() > 64 ||
                entry.title.size() > 200)
                std::abort();
        }
        const auto chosen = chooseUpdate(appcast->entries, {"1", "6.1.0", "x86_64", {}});
        if (chosen && (chosen->length == 0 || chosen->url.host().isEmpty()))
            std::abort();
        if (!parseAppcast(writeAppcast(*appcast)))
            std::abort();
    }
    const QString key = QString::fromLatin1(QByteArray(32, 'k').toBase64());
    if (openFeed(bytes, {{0, {key}, {}}, 0}, key, QDateTime()))
        std::abort();
    static_cast<void>(FeedMemory::of({{0, {key}, {}}, key}, QString::fromUtf8(bytes)));
    return 0;
}
