#pragma once

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QString>

#include <archive.h>
#include <archive_entry.h>

namespace tamsel {

/// An entry of an archive that a test writes.
struct ArchiveFile {
    QByteArray path;
    QByteArray bytes = {};
    unsigned type = AE_IFREG;
    QByteArray link = {};
    int mode = 0755;
    qint64 zeros = 0; ///< in place of bytes
    qint64 holes = 0; ///< the same, written as a hole
};

inline void writeArchive(const QString& file, const QList<ArchiveFile>& files) {
    archive* out = archive_write_new();
    archive_write_set_format_pax_restricted(out);
    archive_write_add_filter_gzip(out);
    archive_write_open_filename(out, QFile::encodeName(file).constData());
    for (const ArchiveFile& from : files) {
        archive_entry* entry = archive_entry_new();
        archive_entry_set_pathname(entry, from.path.constData());
        archive_entry_set_filetype(entry, from.type);
        archive_entry_set_perm(entry, static_cast<__LA_MODE_T>(from.mode));
        archive_entry_set_size(entry, from.zeros + from.holes > 0 ? from.zeros + from.holes
                                                                  : from.bytes.size());
        if (from.holes > 0)
            archive_entry_sparse_add_entry(entry, from.holes, 0);
        if (from.type == AE_IFLNK)
            archive_entry_set_symlink(entry, from.link.constData());
        else if (!from.link.isEmpty())
            archive_entry_set_hardlink(entry, from.link.constData());
        archive_write_header(out, entry);
        archive_write_data(out, from.bytes.constData(), static_cast<size_t>(from.bytes.size()));
        const QByteArray block(1 << 20, '\0');
        for (qint64 left = from.zeros; left > 0; left -= block.size())
            archive_write_data(out, block.constData(),
                               static_cast<size_t>(std::min<qint64>(left, block.size())));
        archive_entry_free(entry);
    }
    archive_write_close(out);
    archive_write_free(out);
}

} // namespace tamsel
