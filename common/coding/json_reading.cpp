#include "coding/json_reading.h"

#include <limits>

namespace tamsel {

namespace {

std::string_view kindOf(const Json& value) {
    switch (value.type()) {
    case Json::value_t::object:
        return "an object";
    case Json::value_t::array:
        return "an array";
    case Json::value_t::string:
        return "a string";
    case Json::value_t::boolean:
        return "a boolean";
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned:
        return "an integer";
    case Json::value_t::number_float:
        return "a fraction";
    default:
        return "null";
    }
}

} // namespace

Result<Json> parseJson(std::string_view text) {
    // The library reports a position only by exception; none leaves this function.
    try {
        return Json::parse(text);
    } catch (const Json::parse_error& error) {
        return fail("not valid JSON at byte " + std::to_string(error.byte));
    } catch (const Json::exception&) {
        return fail("the JSON has a number that is out of range");
    }
}

Result<void> expectKind(bool isRight, std::string_view expected, const Json& found,
                        const Place& place) {
    if (!isRight)
        return fail(wrongKind(expected, kindOf(found)), place.text());
    return {};
}

Result<void> readJson(const Json& value, const Place& place, std::string& out) {
    if (const auto* text = value.get_ptr<const Json::string_t*>())
        out = *text;
    return expectKind(value.is_string(), "a string", value, place);
}

Result<void> readJson(const Json& value, const Place& place, bool& out) {
    if (const auto* flag = value.get_ptr<const Json::boolean_t*>())
        out = *flag;
    return expectKind(value.is_boolean(), "a boolean", value, place);
}

Result<void> readJson(const Json& value, const Place& place, std::int64_t& out) {
    // An unsigned number is asked for first: the library offers it as a signed one too.
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (const auto* number = value.get_ptr<const Json::number_unsigned_t*>()) {
        if (*number > most)
            return fail(std::to_string(*number) + " is out of range", place.text());
        out = static_cast<std::int64_t>(*number);
    } else if (const auto* negative = value.get_ptr<const Json::number_integer_t*>()) {
        out = *negative;
    }
    return expectKind(value.is_number_integer(), "an integer", value, place);
}

} // namespace tamsel
