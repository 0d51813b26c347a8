#include "coding/cfg_coding.h"
#include "coding/seen_devices_coding.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Any bytes: whatever is accepted can be saved again and is then the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tamsel;
    const ByteView bytes(data, size);
    if (const Result<Cfg> cfg = decodeCfg(bytes)) {
        const Result<Bytes> saved = encodeCfg(*cfg);
        if (!saved || decodeCfg(*saved) != cfg) {
            std::abort();
        }
    }
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (const auto devices = decodeSeenDevices(text)) {
        if (decodeSeenDevices(encodeSeenDevices(*devices)) != devices) {
            std::abort();
        }
    }
    return 0;
}
