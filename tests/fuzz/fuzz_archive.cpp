#include "platform/linux/updater/archive_unpacker.h"

#include "base/own_folder.h"

#include <QDir>
#include <QTemporaryDir>

#include <cstdlib>
#include <numeric>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::size_t block = 512;

/// Makes the checksums of a tar right, so that more gets past them.
void sign(std::vector<std::uint8_t>& tar) {
    for (std::size_t at = 0; at + block <= tar.size(); at += block) {
        std::uint8_t* const header = tar.data() + at;
        if (!std::equal(header + 257, header + 262, "ustar"))
            continue;
        std::fill(header + 148, header + 156, ' ');
        std::snprintf(reinterpret_cast<char*>(header + 148), 8, "%06o",
                      std::accumulate(header, header + block, 0U));
    }
}

} // namespace

/// Any bytes as an archive: nothing but its folder is written to, and all in it can be removed.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tamsel;
    static const QTemporaryDir top("/dev/shm/tamsel-fuzz-XXXXXX");
    std::vector<std::uint8_t> bytes(data, data + size);
    sign(bytes);
    const UniqueFd file(::memfd_create("archive", MFD_CLOEXEC));
    if (::write(file.get(), bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
        std::abort();
    const auto folder = OwnFolder::make(top.filePath("in").toStdString());
    if (!folder)
        std::abort();
    static_cast<void>(unpackArchive(QString("/proc/self/fd/%1").arg(file.get()),
                                    QString::fromStdString(folder->path()),
                                    {.bytes = 1 << 20, .entries = 50}, false));
    if (!folder->remove() ||
        !QDir(top.path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot))
        std::abort();
    return 0;
}
