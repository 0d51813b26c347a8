#pragma once

#include "base/error.h"
#include "base/own_folder.h"

#include <QString>

#include <memory>

namespace tamsel {

class Bundle;

/// A folder of our own beside a copy, on its file system and closed to others, where the next
/// version is made ready. It goes with this object, on its last holder's thread, unless it was
/// handed over.
class Staging final {
public:
    /// Fails when the folder can't be made or the file system can't exchange two folders.
    static Result<std::shared_ptr<Staging>> makeBeside(const QString& copy);
    explicit Staging(OwnFolder folder) : m_folder(std::move(folder)) {}
    Staging(const Staging&) = delete;
    Staging& operator=(const Staging&) = delete;
    ~Staging();

    const OwnFolder& own() const { return m_folder; }
    QString folder() const;
    QString archive() const { return folder() + QStringLiteral("/archive"); }
    /// Where the archive is unpacked.
    QString tree() const;
    /// Somebody else looks after the folder now.
    void handOver() { m_isHandedOver = true; }

private:
    OwnFolder m_folder;
    bool m_isHandedOver = false;
};

/// A copy of the application that is a folder of its own, with `bin`, `libexec` and `share`, and
/// can be replaced as a whole.
class InstalledCopy final {
public:
    /// Of the program in `programFolder` and its bundle. Fails when they are not in one folder, or
    /// when there is anything in it that is not ours and would be lost.
    static Result<InstalledCopy> find(const QString& programFolder, const Bundle& bundle);

    const QString& folder() const { return m_folder; }
    QString relauncher() const;
    /// Lets the relauncher find out whether the copy is still the one that runs, with this bundle.
    /// Fails when it is not, or when there is something in it by now that would be lost.
    Result<void> keepIdentity(const Staging& staging, const Bundle& bundle) const;
    /// Every file in the copy, however deep, is one that the copy lists as its own, and all of
    /// those are there. Anything else is the user's, and would be lost.
    static Result<void> checkContents(const QString& folder);
    /// That list, as the maker puts it into `share/tamsel/contents`: a path a line.
    static QByteArray listContents(const QString& folder);
    /// The folder of a copy in an unpacked archive: the only one at its top, with a program, a
    /// relauncher and a bundle, and without folders of the system's.
    static Result<QString> findIn(const QString& tree);
    /// Of the copy in a folder; empty when it has none.
    static QString versionOf(const QString& folder);

private:
    explicit InstalledCopy(QString folder) : m_folder(std::move(folder)) {}

    QString m_folder;
};

} // namespace tamsel
