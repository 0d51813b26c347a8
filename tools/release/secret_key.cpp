#include "secret_key.h"

#include "platform/linux/updater/archive_signature.h"

#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

namespace tamsel {

namespace {

constexpr qint64 maxKeyFile = 1'024;

tl::unexpected<Error> failed(const QFile& file) {
    return fail(file.errorString().toStdString(), file.fileName().toStdString());
}

} // namespace

Result<QString> makeKeyFile(const QString& path) {
    QFile file(path);
    const auto keys = archive_signature::makeKeys();
    if (!file.open(QFile::WriteOnly | QFile::NewOnly, QFile::ReadOwner | QFile::WriteOwner) ||
        file.write(keys.secretKey.toLatin1() + '\n') < 0 || !file.flush())
        return failed(file);
    return keys.publicKey;
}

Result<QString> secretKeyIn(const QString& path) {
    QFile file(path);
    if (!file.open(QFile::ReadOnly))
        return failed(file);
    struct stat info {};
    if (::fstat(file.handle(), &info) != 0 || (info.st_mode & 077) != 0 ||
        info.st_uid != ::geteuid())
        return fail("is not its owner's alone (chmod 600)", path.toStdString());
    return QString::fromLatin1(file.read(maxKeyFile).trimmed());
}

Result<QString> publicKeyIn(const QString& file) {
    return secretKeyIn(file).and_then(archive_signature::publicKeyOf);
}

} // namespace tamsel
