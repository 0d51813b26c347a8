#include "platform/linux/updater/archive_unpacker.h"

#include <QFile>

#include <archive.h>
#include <archive_entry.h>
#include <cerrno>
#include <memory>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace tamsel {

namespace {

using Outcome = tl::expected<void, UnpackError>;

constexpr std::size_t readBlock = std::size_t{256} * 1024;
/// A copy stands open to read for everybody, whatever the archive says; nothing in it runs as
/// somebody else or is shut to its owner.
constexpr mode_t folderMode = 0755;
constexpr mode_t programMode = 0755;
constexpr mode_t fileMode = 0644;
/// Far below what the system takes, wherever the copy will stand.
constexpr std::size_t maxPath = 1'024;
constexpr std::size_t maxDepth = 32;

struct CloseReader {
    void operator()(archive* reader) const { archive_read_free(reader); }
};
struct CloseWriter {
    void operator()(archive* writer) const { archive_write_free(writer); }
};

Outcome wrong(UnpackFault fault, const QString& detail) {
    return tl::unexpected(UnpackError{fault, detail});
}

/// What the library says of its last failure.
QString reasonOf(archive* of) {
    const char* text = archive_error_string(of);
    return text ? QString::fromUtf8(text) : QStringLiteral("unknown");
}

std::vector<std::string_view> partsOf(std::string_view path) {
    std::vector<std::string_view> parts;
    while (!path.empty()) {
        const std::size_t slash = path.find('/');
        const std::string_view part = path.substr(0, slash);
        if (!part.empty() && part != ".")
            parts.push_back(part);
        path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
    }
    return parts;
}

bool isSafePath(std::string_view path) {
    if (path.empty() || path.front() == '/')
        return false;
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; };
    if (path.size() > maxPath || std::any_of(path.begin(), path.end(), isControl))
        return false;
    const auto parts = partsOf(path);
    return parts.size() <= maxDepth && std::find(parts.begin(), parts.end(), "..") == parts.end();
}

mode_t modeOf(archive_entry* entry) {
    if (archive_entry_filetype(entry) == AE_IFDIR)
        return folderMode;
    return (archive_entry_perm(entry) & S_IXUSR) != 0 ? programMode : fileMode;
}

class Unpacking final {
public:
    Unpacking(QString folder, const UnpackLimits& limits, const std::atomic<bool>& giveUp)
        : m_folder(std::move(folder)), m_limits(limits), m_giveUp(giveUp) {}

    Outcome run(const QString& file);

private:
    Outcome takeEntry(archive_entry* entry);
    Outcome checkEntry(archive_entry* entry);
    Outcome copyData(const QString& path, la_int64_t length);
    Outcome writeFailed(const QString& path);

    const QString m_folder;
    const UnpackLimits m_limits;
    const std::atomic<bool>& m_giveUp;
    std::unique_ptr<archive, CloseReader> m_reader{archive_read_new()};
    std::unique_ptr<archive, CloseWriter> m_writer{archive_write_disk_new()};
    std::uint64_t m_bytes = 0;
    std::uint64_t m_entries = 0;
};

Outcome Unpacking::run(const QString& file) {
    archive_read_support_format_tar(m_reader.get());
    archive_read_support_filter_gzip(m_reader.get());
    archive_read_support_filter_xz(m_reader.get());
    archive_read_support_filter_zstd(m_reader.get());
    // The folder is ours alone; the library's own guards come on top of the checks here.
    archive_write_disk_set_options(
        m_writer.get(), ARCHIVE_EXTRACT_PERM | ARCHIVE_EXTRACT_NO_OVERWRITE |
                            ARCHIVE_EXTRACT_SECURE_NODOTDOT | ARCHIVE_EXTRACT_SECURE_SYMLINKS);
    if (archive_read_open_filename(m_reader.get(), QFile::encodeName(file).constData(),
                                   readBlock) != ARCHIVE_OK)
        return wrong(UnpackFault::malformed, reasonOf(m_reader.get()));
    for (;;) {
        if (m_giveUp)
            return wrong(UnpackFault::givenUp, {});
        archive_entry* entry = nullptr;
        const int next = archive_read_next_header(m_reader.get(), &entry);
        if (next == ARCHIVE_EOF)
            break;
        if (next != ARCHIVE_OK)
            return wrong(UnpackFault::malformed, reasonOf(m_reader.get()));
        if (auto taken = takeEntry(entry); !taken)
            return taken;
    }
    // Folders get their modes at the end.
    if (archive_write_close(m_writer.get()) != ARCHIVE_OK)
        return writeFailed(m_folder);
    return {};
}

Outcome Unpacking::takeEntry(archive_entry* entry) {
    if (++m_entries > m_limits.entries)
        return wrong(UnpackFault::tooLarge, QStringLiteral("too many entries"));
    if (auto checked = checkEntry(entry); !checked)
        return checked;
    const QByteArray name = archive_entry_pathname(entry);
    const QString path = QFile::decodeName(name);
    archive_entry_copy_pathname(entry, (QFile::encodeName(m_folder) + '/' + name).constData());
    archive_entry_set_perm(entry, modeOf(entry));
    if (archive_write_header(m_writer.get(), entry) != ARCHIVE_OK)
        return writeFailed(path);
    if (archive_entry_filetype(entry) == AE_IFREG) {
        if (auto copied = copyData(path, archive_entry_size(entry)); !copied)
            return copied;
    }
    if (archive_write_finish_entry(m_writer.get()) != ARCHIVE_OK)
        return writeFailed(path);
    return {};
}

Outcome Unpacking::checkEntry(archive_entry* entry) {
    const char* name = archive_entry_pathname(entry);
    const std::string_view path = name ? name : "";
    const QString shown = QString::fromLocal8Bit(path.data(), static_cast<qsizetype>(path.size()));
    if (!isSafePath(path) || archive_entry_hardlink(entry))
        return wrong(UnpackFault::unsafe, shown);
    switch (archive_entry_filetype(entry)) {
    case AE_IFREG:
    case AE_IFDIR:
        return {};
    case AE_IFLNK: {
        const char* target = archive_entry_symlink(entry);
        if (target && isInside(path, target))
            return {};
        break;
    }
    default:
        break;
    }
    return wrong(UnpackFault::unsafe, shown);
}

Outcome Unpacking::copyData(const QString& path, la_int64_t length) {
    // With its holes: they count as what they read as.
    m_bytes += static_cast<std::uint64_t>(std::max<la_int64_t>(length, 0));
    if (m_bytes > m_limits.bytes)
        return wrong(UnpackFault::tooLarge, path);
    for (;;) {
        const void* block = nullptr;
        std::size_t size = 0;
        la_int64_t offset = 0;
        const int read = archive_read_data_block(m_reader.get(), &block, &size, &offset);
        if (read == ARCHIVE_EOF)
            return {};
        if (read != ARCHIVE_OK)
            return wrong(UnpackFault::malformed, reasonOf(m_reader.get()));
        if (offset > length || static_cast<la_int64_t>(size) > length - offset)
            return wrong(UnpackFault::malformed, path);
        if (m_giveUp)
            return wrong(UnpackFault::givenUp, {});
        if (archive_write_data_block(m_writer.get(), block, size, offset) != ARCHIVE_OK)
            return writeFailed(path);
    }
}

Outcome Unpacking::writeFailed(const QString& path) {
    const int error = archive_errno(m_writer.get());
    const auto fault =
        error == ENOSPC || error == EDQUOT ? UnpackFault::noRoom : UnpackFault::failed;
    return wrong(fault, path + QStringLiteral(": ") + reasonOf(m_writer.get()));
}

} // namespace

bool isInside(std::string_view path, std::string_view target) {
    if (target.empty() || target.front() == '/')
        return false;
    // The archive's folder itself gets another name, and other neighbours.
    const std::size_t parts = partsOf(path).size();
    if (parts < 2)
        return false;
    std::size_t depth = parts - 2;
    bool isClimbing = true;
    for (const std::string_view part : partsOf(target)) {
        if (part != "..") {
            isClimbing = false;
            continue;
        }
        // After a name, ".." may lead anywhere: the name may be a link itself.
        if (!isClimbing || depth == 0)
            return false;
        --depth;
    }
    return true;
}

Outcome unpackArchive(const QString& archive, const QString& folder, const UnpackLimits& limits,
                      const std::atomic<bool>& giveUp) {
    return Unpacking(folder, limits, giveUp).run(archive);
}

} // namespace tamsel
