#include "platform/linux/updater/installed_copy.h"

#include "copies/exchange.h"
#include "platform/linux/store/folder_bundle.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tamsel {

namespace {

const QString infoFile = QStringLiteral("/share/tamsel/Info.plist");
const QString program = QStringLiteral("/bin/tamsel");

const QString contentsFile = QStringLiteral("share/tamsel/contents");
constexpr qint64 maxContents = qint64{4} * 1024 * 1024;

constexpr QDir::Filters anything =
    QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

bool canExchangeIn(const QString& folder) {
    const QByteArray one = QFile::encodeName(folder + QStringLiteral("/one"));
    const QByteArray other = QFile::encodeName(folder + QStringLiteral("/other"));
    const bool can =
        ::mkdir(one.constData(), 0700) == 0 && ::mkdir(other.constData(), 0700) == 0 &&
        ::renameat2(AT_FDCWD, one.constData(), AT_FDCWD, other.constData(), RENAME_EXCHANGE) == 0;
    ::rmdir(one.constData());
    ::rmdir(other.constData());
    return can;
}

bool isOnOneFileSystem(const QString& one, const QString& other) {
    struct stat ones {};
    struct stat others {};
    return ::stat(QFile::encodeName(one).constData(), &ones) == 0 &&
           ::stat(QFile::encodeName(other).constData(), &others) == 0 &&
           ones.st_dev == others.st_dev;
}

} // namespace

Result<std::shared_ptr<Staging>> Staging::makeBeside(const QString& copy) {
    auto folder = OwnFolder::make(stagingPrefix(QFile::encodeName(copy).toStdString()));
    if (!folder)
        return tl::unexpected(folder.error());
    auto staging = std::make_shared<Staging>(std::move(*folder));
    if (!isOnOneFileSystem(copy, staging->folder()) || !canExchangeIn(staging->folder()))
        return fail("its file system can't exchange folders", copy.toStdString());
    return staging;
}

Staging::~Staging() {
    if (!m_isHandedOver)
        static_cast<void>(m_folder.remove());
}

QString Staging::folder() const {
    return QFile::decodeName(QByteArray::fromStdString(m_folder.path()));
}

QString Staging::tree() const {
    return QFile::decodeName(QByteArray::fromStdString(unpackedIn(m_folder)));
}

Result<InstalledCopy> InstalledCopy::find(const QString& programFolder, const Bundle& bundle) {
    const QString folder = QFileInfo(programFolder + QStringLiteral("/..")).canonicalFilePath();
    InstalledCopy copy(folder);
    const auto info = bundle.pathForResource(QStringLiteral("Info"), QStringLiteral("plist"));
    const bool isWhole = !folder.isEmpty() && info == folder + infoFile &&
                         QFileInfo(folder + program).isExecutable() &&
                         QFileInfo(copy.relauncher()).isExecutable();
    if (!isWhole)
        return fail("is not a copy in a folder of its own", folder.toStdString());
    return checkContents(folder).map([&copy] { return copy; });
}

QByteArray InstalledCopy::listContents(const QString& folder) {
    QByteArrayList paths;
    QDirIterator all(folder, anything, QDirIterator::Subdirectories);
    while (all.hasNext()) {
        const QString path = all.next().mid(folder.size() + 1);
        const QFileInfo info = all.fileInfo();
        if ((!info.isDir() || info.isSymLink()) && path != contentsFile)
            paths << QFile::encodeName(path);
    }
    std::sort(paths.begin(), paths.end());
    return paths.join('\n') + '\n';
}

Result<void> InstalledCopy::checkContents(const QString& folder) {
    QFile file(folder + u'/' + contentsFile);
    if (!file.open(QFile::ReadOnly) || file.size() > maxContents)
        return fail("does not list what belongs to it", folder.toStdString());
    const QByteArrayList owned = file.readAll().trimmed().split('\n');
    const QSet<QByteArray> own(owned.begin(), owned.end());
    const QByteArrayList there = listContents(folder).chopped(1).split('\n');
    for (const QByteArray& path : there) {
        if (!own.contains(path))
            return fail("the folder also holds " + path.toStdString(), folder.toStdString());
    }
    if (there.size() != own.size())
        return fail("the copy is not whole", folder.toStdString());
    return {};
}

QString InstalledCopy::relauncher() const {
    return m_folder + QStringLiteral("/libexec/tamsel/tamsel-relauncher");
}

Result<void> InstalledCopy::keepIdentity(const Staging& staging, const Bundle& bundle) const {
    auto kept = rememberCopy(staging.own(), QFile::encodeName(m_folder).toStdString());
    if (!kept)
        return kept;
    if (versionOf(m_folder) != bundle.infoString(QStringLiteral("CFBundleVersion")))
        return fail("it is another version by now", m_folder.toStdString());
    return find(m_folder + QStringLiteral("/bin"), bundle).map([](const InstalledCopy&) {});
}

Result<QString> InstalledCopy::findIn(const QString& tree) {
    const QStringList names = QDir(tree).entryList(anything);
    const QString folder = tree + u'/' + names.value(0);
    if (names.size() != 1 || !QFileInfo(folder + infoFile).isFile() ||
        !QFileInfo(folder + program).isExecutable())
        return fail("holds no copy of Tamsel");
    if (!QFileInfo(InstalledCopy(folder).relauncher()).isExecutable())
        return fail("its copy could not be replaced: it has no relauncher");
    // What else an installation has is the system's: units, and folders that others share.
    const QStringList own{QStringLiteral("bin"), QStringLiteral("libexec"),
                          QStringLiteral("share")};
    if (QDir(folder).entryList(anything, QDir::Name) != own)
        return fail("its copy has folders of the system's");
    return folder;
}

QString InstalledCopy::versionOf(const QString& folder) {
    const FolderBundle bundle(folder + QStringLiteral("/share/tamsel"),
                              folder + QStringLiteral("/bin"));
    return bundle.infoString(QStringLiteral("CFBundleVersion")).value_or(QString());
}

} // namespace tamsel
