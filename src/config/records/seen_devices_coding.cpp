#include "config/records/cfg_coding.h"

#include "config/records/coding_errors.h"
#include "config/records/place.h"
#include "config/records/record_fields.h"

#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <tuple>
#include <utility>

namespace tamsel {

namespace {

using nlohmann::json;

std::string_view kindOf(const json& value) {
    switch (value.type()) {
    case json::value_t::object:
        return "an object";
    case json::value_t::array:
        return "an array";
    case json::value_t::string:
        return "a string";
    case json::value_t::boolean:
        return "a boolean";
    case json::value_t::number_integer:
    case json::value_t::number_unsigned:
        return "an integer";
    case json::value_t::number_float:
        return "a fraction";
    default:
        return "null";
    }
}

Result<void> expect(bool isRight, std::string_view expected, const json& found,
                    const Place& place) {
    if (!isRight)
        return fail(wrongKind(expected, kindOf(found)), place.text());
    return {};
}

Result<void> read(const json& value, const Place& place, std::string& out) {
    if (const auto* text = value.get_ptr<const json::string_t*>())
        out = *text;
    return expect(value.is_string(), "a string", value, place);
}

Result<void> read(const json& value, const Place& place, bool& out) {
    if (const auto* flag = value.get_ptr<const json::boolean_t*>())
        out = *flag;
    return expect(value.is_boolean(), "a boolean", value, place);
}

Result<void> read(const json& value, const Place& place, std::int64_t& out) {
    // An unsigned number is asked for first: the library offers it as a signed one too.
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (const auto* number = value.get_ptr<const json::number_unsigned_t*>()) {
        if (*number > most)
            return fail(std::to_string(*number) + " is out of range", place.text());
        out = static_cast<std::int64_t>(*number);
    } else if (const auto* negative = value.get_ptr<const json::number_integer_t*>()) {
        out = *negative;
    }
    return expect(value.is_number_integer(), "an integer", value, place);
}

template <RecordType Record>
Result<void> read(const json& value, const Place& place, Record& out) {
    Result<void> done = expect(value.is_object(), "an object", value, place);
    if (!done)
        return done;
    const auto readField = [&](const auto& field) {
        const Place inside(place, field.key);
        const auto found = value.find(field.key);
        if (found == value.end()) {
            done = fail(std::string(missingKey), inside.text());
        } else {
            done = read(*found, inside, out.*field.member);
        }
        return done.has_value();
    };
    std::apply([&](const auto&... field) { (readField(field) && ...); }, FieldsOf<Record>::list);
    return done;
}

Result<json> parse(std::string_view text) {
    // The library reports a position only by exception; none leaves this function.
    try {
        return json::parse(text);
    } catch (const json::parse_error& error) {
        return fail("not valid JSON at byte " + std::to_string(error.byte));
    } catch (const json::exception&) {
        return fail("the JSON has a number that is out of range");
    }
}

} // namespace

Result<std::vector<SeenDeviceInfo>> decodeSeenDevices(std::string_view text) {
    const Result<json> document = parse(text);
    if (!document)
        return tl::unexpected(document.error());
    const Place root;
    if (Result<void> right = expect(document->is_array(), "an array", *document, root); !right)
        return tl::unexpected(std::move(right.error()));
    std::vector<SeenDeviceInfo> devices;
    for (const json& element : *document) {
        const Place place(root, devices.size());
        if (Result<void> done = read(element, place, devices.emplace_back()); !done)
            return tl::unexpected(std::move(done.error()));
    }
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
