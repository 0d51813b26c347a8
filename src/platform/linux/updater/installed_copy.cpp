#include "platform/linux/updater/installed_copy.h"

#include "platform/linux/store/folder_bundle.h"

#include <QDir>
#include <QFileInfo>

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tamsel {

namespace {

const QString infoFile = QStringLiteral("/share/tamsel/Info.plist");
const QString program = QStringLiteral("/bin/tamsel");

/// What may stand in a copy's folder; "" is its top.
struct Contents {
    const char* folder = "";
    QStringList names;
};

const std::array<Contents, 4>& ownContents() {
    static const std::array<Contents, 4> contents{{
        {"", {QStringLiteral("bin"), QStringLiteral("libexec"), QStringLiteral("share")}},
        {"bin", {QStringLiteral("tamsel")}},
        {"libexec", {QStringLiteral("tamsel")}},
        {"share",
         {QStringLiteral("tamsel"), QStringLiteral("applications"), QStringLiteral("icons"),
          QStringLiteral("metainfo"), QStringLiteral("polkit-1")}},
    }};
    return contents;
}

QStringList entriesOf(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                  QDir::NoDotAndDotDot);
}

std::string reason(int error) {
    return std::generic_category().message(error);
}

/// "/home/me/.tamsel.update-" for the copy /home/me/tamsel.
QString stagingPrefix(const QString& copy) {
    const QFileInfo info(copy);
    return QStringLiteral("%1/.%2.update-").arg(info.absolutePath(), info.fileName());
}

UniqueFd lockFolder(const QString& folder, int how) {
    UniqueFd fd(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return ::flock(fd.get(), how | LOCK_NB) == 0 ? std::move(fd) : UniqueFd();
}

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

Result<Staging> Staging::makeBeside(const QString& copy) {
    QByteArray name = QFile::encodeName(stagingPrefix(copy)) + "XXXXXX";
    if (!::mkdtemp(name.data()))
        return fail(reason(errno), QFileInfo(copy).absolutePath().toStdString());
    const QString folder = QFile::decodeName(name);
    Staging staging(folder, lockFolder(folder, LOCK_SH));
    if (!isOnOneFileSystem(copy, folder) || !canExchangeIn(folder))
        return fail("its file system can't exchange folders", copy.toStdString());
    return staging;
}

Staging::Staging(Staging&& other) noexcept
    : m_folder(std::exchange(other.m_folder, {})), m_lock(std::move(other.m_lock)) {}

Staging& Staging::operator=(Staging&& other) noexcept {
    std::swap(m_folder, other.m_folder);
    std::swap(m_lock, other.m_lock);
    return *this;
}

Staging::~Staging() {
    if (!m_folder.isEmpty())
        QDir(m_folder).removeRecursively();
}

void Staging::handOver() {
    m_folder.clear();
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
    for (const auto& [name, names] : ownContents()) {
        for (const QString& entry : entriesOf(folder + u'/' + QLatin1String(name))) {
            if (!names.contains(entry))
                return fail("the folder also holds " + entry.toStdString(), folder.toStdString());
        }
    }
    return copy;
}

QString InstalledCopy::relauncher() const {
    return m_folder + QStringLiteral("/libexec/tamsel/tamsel-relauncher");
}

void InstalledCopy::clearLeftovers() const {
    const QFileInfo prefix(stagingPrefix(m_folder));
    const QStringList names =
        QDir(prefix.absolutePath())
            .entryList({prefix.fileName() + u'*'}, QDir::Dirs | QDir::Hidden | QDir::NoSymLinks);
    for (const QString& name : names) {
        const QString folder = prefix.absolutePath() + u'/' + name;
        if (lockFolder(folder, LOCK_EX).isOpen())
            QDir(folder).removeRecursively();
    }
}

Result<QString> InstalledCopy::findIn(const QString& tree) {
    const QStringList names = entriesOf(tree);
    const QString folder = tree + u'/' + names.value(0);
    if (names.size() != 1 || !QFileInfo(folder + infoFile).isFile() ||
        !QFileInfo(folder + program).isExecutable())
        return fail("holds no copy of Tamsel");
    return folder;
}

QString InstalledCopy::versionOf(const QString& folder) {
    const FolderBundle bundle(folder + QStringLiteral("/share/tamsel"),
                              folder + QStringLiteral("/bin"));
    return bundle.infoString(QStringLiteral("CFBundleVersion")).value_or(QString());
}

} // namespace tamsel
