#pragma once

#include "base/error.h"

#include <QStringList>

#include <optional>

namespace tamsel {

class Bundle;

/// The keys that may sign feeds and archives. The maker's key that is kept offline says which they
/// are; of two lists the one with the higher number is in force, so that a key which is not in it
/// any more is revoked. As text: "NUMBER KEY,KEY SIGNATURE".
struct KeyList {
    quint64 number = 0; ///< 0: the bundle's own keys, which need nobody's word
    QStringList keys;
    QString signature; ///< by the offline key

    /// Nothing for what is not a list, or not one by this offline key; "" is nobody's key.
    static std::optional<KeyList> read(const QString& text, const QString& offlineKey);
    /// The same, whoever has signed it.
    static std::optional<KeyList> parse(const QString& text);
    /// A list with a signature, for the maker.
    static Result<KeyList> make(quint64 number, const QStringList& keys,
                                const QString& offlineSecret);
    QString text() const;

    bool operator==(const KeyList&) const = default;
};

/// What a copy trusts by itself: "QLPublicKey" holds its keys with blanks between, "QLKeyList" a
/// list in place of them, "QLOfflineKey" the key that lists are signed with.
struct BundleKeys {
    KeyList list;
    QString offlineKey; ///< empty: no list is ever taken

    static Result<BundleKeys> of(const Bundle& bundle);
};

} // namespace tamsel
