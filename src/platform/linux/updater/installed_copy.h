#pragma once

#include "base/error.h"
#include "base/unique_fd.h"

#include <QString>

namespace tamsel {

class Bundle;

/// A folder of our own beside a copy, on its file system and closed to others, where the next
/// version is made ready. It goes with this object unless it was handed over.
class Staging final {
public:
    /// Fails when the folder can't be made or the file system can't exchange two folders.
    static Result<Staging> makeBeside(const QString& copy);
    Staging(Staging&& other) noexcept;
    Staging& operator=(Staging&& other) noexcept;
    ~Staging();

    const QString& folder() const { return m_folder; }
    QString archive() const { return m_folder + QStringLiteral("/archive"); }
    /// Where the archive is unpacked.
    QString tree() const { return m_folder + QStringLiteral("/new"); }
    /// Somebody else looks after the folder now.
    void handOver();

private:
    Staging(QString folder, UniqueFd lock) : m_folder(std::move(folder)), m_lock(std::move(lock)) {}

    QString m_folder;
    UniqueFd m_lock; ///< as long as it is held nobody takes the folder for a leftover
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
    /// What an update that was cut short has left beside the copy.
    void clearLeftovers() const;
    /// The folder of a copy in an unpacked archive: the only one at its top, with a program and a
    /// bundle.
    static Result<QString> findIn(const QString& tree);
    /// Of the copy in a folder; empty when it has none.
    static QString versionOf(const QString& folder);

private:
    explicit InstalledCopy(QString folder) : m_folder(std::move(folder)) {}

    QString m_folder;
};

} // namespace tamsel
