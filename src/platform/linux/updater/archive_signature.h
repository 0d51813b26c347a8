#pragma once

#include "base/error.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace tamsel {

/// Ed25519 over a file's bytes (RFC 8032, pure: no hash in between); keys and signatures travel as
/// base64.
namespace archive_signature {

/// A public key is fit for use.
bool isPublicKey(const QString& publicKey);

/// The bytes are as one of these keys' owner signed them.
bool fits(const QByteArray& bytes, const QString& signature, const QStringList& publicKeys);

/// Every byte of the file is as its maker signed it. The file is mapped, not copied. Any thread.
Result<void> verify(const QString& file, const QString& signature, const QStringList& publicKeys);
/// A signature has the form of one.
bool isSignature(const QString& signature);

struct KeyPair {
    QString publicKey;
    QString secretKey; ///< the seed, 32 bytes
};

KeyPair makeKeys();
/// The signature of a file by the key that came of makeKeys().
Result<QString> sign(const QString& file, const QString& secretKey);
Result<QString> signBytes(const QByteArray& bytes, const QString& secretKey);
/// The public half of a secret key.
Result<QString> publicKeyOf(const QString& secretKey);

} // namespace archive_signature

} // namespace tamsel
