#pragma once

#include "base/error.h"

#include <QString>

namespace tamsel {

/// Ed25519 over a file's bytes (RFC 8032, pure: no hash in between); keys and signatures travel as
/// base64.
namespace archive_signature {

/// A public key is fit for use.
bool isPublicKey(const QString& publicKey);

/// Every byte of the file is as its maker signed it. The file is mapped, not copied. Any thread.
Result<void> verify(const QString& file, const QString& signature, const QString& publicKey);

struct KeyPair {
    QString publicKey;
    QString secretKey; ///< the seed, 32 bytes
};

KeyPair makeKeys();
/// The signature of a file by the key that came of makeKeys().
Result<QString> sign(const QString& file, const QString& secretKey);
/// The public half of a secret key.
Result<QString> publicKeyOf(const QString& secretKey);

} // namespace archive_signature

} // namespace tamsel
