#include "platform/linux/updater/archive_signature.h"

#include <QFile>

#include <array>
#include <functional>
#include <sodium.h>

namespace tamsel::archive_signature {

namespace {

using Seed = std::array<unsigned char, crypto_sign_SEEDBYTES>;
using PublicKey = std::array<unsigned char, crypto_sign_PUBLICKEYBYTES>;
using SecretKey = std::array<unsigned char, crypto_sign_SECRETKEYBYTES>;
using Signature = std::array<unsigned char, crypto_sign_BYTES>;

template <class Bytes>
std::optional<Bytes> decode(const QString& text) {
    const auto decoded = QByteArray::fromBase64Encoding(
        text.toLatin1(), QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    Bytes bytes{};
    if (!decoded || decoded.decoded.size() != static_cast<qsizetype>(bytes.size()))
        return std::nullopt;
    std::copy(decoded.decoded.begin(), decoded.decoded.end(), bytes.begin());
    return bytes;
}

template <class Bytes>
QString encode(const Bytes& bytes) {
    return QString::fromLatin1(QByteArray(reinterpret_cast<const char*>(bytes.data()),
                                          static_cast<qsizetype>(bytes.size()))
                                   .toBase64());
}

/// Runs `work` over the file's bytes.
Result<void> withBytes(const QString& path,
                       const std::function<Result<void>(const unsigned char*, std::size_t)>& work) {
    QFile file(path);
    if (!file.open(QFile::ReadOnly))
        return fail(file.errorString().toStdString(), path.toStdString());
    const qint64 size = file.size();
    const unsigned char* bytes = size > 0 ? file.map(0, size) : nullptr;
    if (!bytes)
        return fail("can't be read", path.toStdString());
    return work(bytes, static_cast<std::size_t>(size));
}

bool fitsOne(const unsigned char* bytes, std::size_t size, const Signature& signature,
             const QStringList& publicKeys) {
    return std::any_of(publicKeys.begin(), publicKeys.end(), [&](const QString& text) {
        const auto key = decode<PublicKey>(text);
        return key && crypto_sign_verify_detached(signature.data(), bytes, size, key->data()) == 0;
    });
}

const unsigned char* raw(const QByteArray& bytes) {
    return reinterpret_cast<const unsigned char*>(bytes.constData());
}

struct Keys {
    PublicKey publicKey;
    SecretKey secretKey;
};

Keys keysOf(const Seed& seed) {
    Keys keys{};
    crypto_sign_seed_keypair(keys.publicKey.data(), keys.secretKey.data(), seed.data());
    return keys;
}

} // namespace

bool isPublicKey(const QString& publicKey) {
    return decode<PublicKey>(publicKey).has_value();
}

bool isSignature(const QString& signature) {
    return decode<Signature>(signature).has_value();
}

bool fits(const QByteArray& bytes, const QString& signature, const QStringList& publicKeys) {
    const auto signedBy = decode<Signature>(signature);
    return signedBy &&
           fitsOne(raw(bytes), static_cast<std::size_t>(bytes.size()), *signedBy, publicKeys);
}

Result<void> verify(const QString& file, const QString& signature, const QStringList& publicKeys) {
    const auto signedBy = decode<Signature>(signature);
    if (!signedBy)
        return fail(signature.isEmpty() ? "the signature is missing"
                                        : "the signature is malformed");
    return withBytes(file, [&](const unsigned char* bytes, std::size_t size) -> Result<void> {
        if (!fitsOne(bytes, size, *signedBy, publicKeys))
            return fail("the signature does not fit");
        return {};
    });
}

KeyPair makeKeys() {
    Seed seed{};
    if (sodium_init() < 0)
        return {};
    randombytes_buf(seed.data(), seed.size());
    return {encode(keysOf(seed).publicKey), encode(seed)};
}

Result<QString> sign(const QString& file, const QString& secretKey) {
    QString signature;
    return withBytes(file,
                     [&](const unsigned char* bytes, std::size_t size) -> Result<void> {
                         const auto made =
                             signBytes(QByteArray::fromRawData(reinterpret_cast<const char*>(bytes),
                                                               static_cast<qsizetype>(size)),
                                       secretKey);
                         signature = made.value_or(QString());
                         return made ? Result<void>() : tl::unexpected(made.error());
                     })
        .map([&signature] { return signature; });
}

Result<QString> signBytes(const QByteArray& bytes, const QString& secretKey) {
    const auto seed = decode<Seed>(secretKey);
    if (!seed)
        return fail("the secret key is malformed");
    const Keys keys = keysOf(*seed);
    Signature signature{};
    crypto_sign_detached(signature.data(), nullptr, raw(bytes),
                         static_cast<unsigned long long>(bytes.size()), keys.secretKey.data());
    return encode(signature);
}

Result<QString> publicKeyOf(const QString& secretKey) {
    const auto seed = decode<Seed>(secretKey);
    if (!seed)
        return fail("the secret key is malformed");
    return encode(keysOf(*seed).publicKey);
}

} // namespace tamsel::archive_signature
