#include "coding/seen_devices_coding.h"

#include "coding/json_reading.h"
#include "records/record_fields.h"

#include <nlohmann/json.hpp>
#include <tuple>
#include <utility>

namespace tamsel {

Result<std::vector<SeenDeviceInfo>> decodeSeenDevices(std::string_view text) {
    const Result<Json> document = parseJson(text);
    if (!document)
        return tl::unexpected(document.error());
    std::vector<SeenDeviceInfo> devices;
    if (Result<void> done = readJson(*document, Place(), devices); !done)
        return tl::unexpected(std::move(done.error()));
    return devices;
}

std::string encodeSeenDevices(const std::vector<SeenDeviceInfo>& devices) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const SeenDeviceInfo& device : devices) {
        auto& object = list.emplace_back(nlohmann::ordered_json::object());
        const auto add = [&](const auto& field) { object[field.key] = device.*field.member; };
        std::apply([&](const auto&... field) { (add(field), ...); },
                   FieldsOf<SeenDeviceInfo>::list);
    }
    // Device names come from hardware and need not be UTF-8.
    return list.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

} // namespace tamsel
