#include "platform/linux/updater/key_list.h"

#include "platform/bundle.h"
#include "platform/linux/updater/archive_signature.h"

#include <algorithm>

namespace tamsel {

namespace {

constexpr qsizetype maxKeys = 16;

bool areKeys(const QStringList& keys) {
    return !keys.isEmpty() && keys.size() <= maxKeys &&
           std::all_of(keys.begin(), keys.end(), archive_signature::isPublicKey);
}

/// What is signed; the beginning keeps it apart from everything else that a key may sign.
QByteArray statement(quint64 number, const QStringList& keys) {
    return "tamsel-keys\n" + QByteArray::number(number) + '\n' + keys.join(u',').toLatin1() + '\n';
}

} // namespace

std::optional<KeyList> KeyList::parse(const QString& text) {
    const QStringList words = text.split(u' ');
    if (words.size() != 3)
        return std::nullopt;
    bool isNumber = false;
    KeyList list{words[0].toULongLong(&isNumber), words[1].split(u','), words[2]};
    if (!isNumber || list.number == 0 || !areKeys(list.keys) || list.text() != text)
        return std::nullopt;
    return list;
}

std::optional<KeyList> KeyList::read(const QString& text, const QString& offlineKey) {
    auto list = parse(text);
    if (!list || !archive_signature::fits(statement(list->number, list->keys), list->signature,
                                          {offlineKey}))
        return std::nullopt;
    return list;
}

Result<KeyList> KeyList::make(quint64 number, const QStringList& keys,
                              const QString& offlineSecret) {
    if (!areKeys(keys))
        return fail("are no keys", keys.join(u' ').toStdString());
    return archive_signature::signBytes(statement(number, keys), offlineSecret)
        .map([&](const QString& made) {
            return KeyList{number, keys, made};
        });
}

QString KeyList::text() const {
    // A single arg() each: nothing in the values is a place marker.
    return QStringLiteral("%1 %2 %3").arg(QString::number(number), keys.join(u','), signature);
}

Result<BundleKeys> BundleKeys::of(const Bundle& bundle) {
    const auto info = [&bundle](const char* key) {
        return bundle.infoString(QLatin1String(key)).value_or(QString());
    };
    BundleKeys keys;
    keys.list.keys = info("QLPublicKey").split(u' ', Qt::SkipEmptyParts);
    keys.offlineKey = info("QLOfflineKey");
    if (keys.list.keys.isEmpty())
        return fail("QLPublicKey is missing");
    if (!areKeys(keys.list.keys))
        return fail("QLPublicKey is not an Ed25519 key");
    if (!keys.offlineKey.isEmpty() && !archive_signature::isPublicKey(keys.offlineKey))
        return fail("QLOfflineKey is not an Ed25519 key");
    if (const QString text = info("QLKeyList"); !text.isEmpty()) {
        const auto list = KeyList::read(text, keys.offlineKey);
        if (!list)
            return fail("QLKeyList is not signed by QLOfflineKey");
        keys.list = *list;
    }
    return keys;
}

} // namespace tamsel
