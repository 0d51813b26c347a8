#pragma once

#include "base/error.h"
#include "coding/coding_errors.h"
#include "coding/place.h"
#include "records/record_fields.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

// Reading records from JSON. An error says where in the document it is. Values of further types are
// read by further overloads of readJson.

namespace tamsel {

using Json = nlohmann::json;

Result<Json> parseJson(std::string_view text);

Result<void> expectKind(bool isRight, std::string_view expected, const Json& found,
                        const Place& place);

Result<void> readJson(const Json& value, const Place& place, std::string& out);
Result<void> readJson(const Json& value, const Place& place, bool& out);
Result<void> readJson(const Json& value, const Place& place, std::int64_t& out);

template <RecordType Record>
Result<void> readJson(const Json& value, const Place& place, Record& out);

template <class Element>
Result<void> readJson(const Json& value, const Place& place, std::vector<Element>& out) {
    Result<void> done = expectKind(value.is_array(), "an array", value, place);
    out.clear();
    for (std::size_t i = 0; done && i < value.size(); ++i)
        done = readJson(value[i], Place(place, i), out.emplace_back());
    return done;
}

template <RecordType Record, class Field>
Result<void> readField(const Json& object, const Place& place, const Field& field, Record& out) {
    const Place inside(place, field.key);
    const auto found = object.find(field.key);
    if constexpr (Field::isOptional) {
        if (found == object.end() || found->is_null())
            return {};
        return readJson(*found, inside, (out.*field.member).emplace());
    } else {
        if (found == object.end() && field.presence == Presence::defaulted)
            return {};
        if (found == object.end())
            return fail(std::string(missingKey), inside.text());
        return readJson(*found, inside, out.*field.member);
    }
}

template <RecordType Record>
Result<void> readJson(const Json& value, const Place& place, Record& out) {
    Result<void> done = expectKind(value.is_object(), "an object", value, place);
    if (!done)
        return done;
    const auto read = [&](const auto& field) {
        done = readField(value, place, field, out);
        return done.has_value();
    };
    std::apply([&](const auto&... field) { (read(field) && ...); }, FieldsOf<Record>::list);
    return done;
}

} // namespace tamsel
