#include "coding/cfg_coding.h"

#include "coding/coding_budget.h"
#include "coding/coding_errors.h"
#include "coding/place.h"
#include "coding/plist_reader.h"
#include "records/record_fields.h"

#include <algorithm>
#include <bitset>
#include <cstdint>
#include <limits>
#include <tuple>
#include <utility>

namespace tamsel {

namespace {

/// Reads records straight from the document. The record types bound the depth, the budget bounds
/// the time and the memory, however the document's objects refer to each other.
class CfgDecoder {
public:
    explicit CfgDecoder(const PlistReader& reader) : m_reader(reader) {}

    template <RecordType Record>
    Result<void> read(const PlistObject& object, const Place& place, Record& out);

private:
    template <class Record>
    using Seen = std::bitset<fieldCount<Record>>;

    Result<void> read(const PlistObject& object, const Place& place, std::string& out);
    Result<void> read(const PlistObject& object, const Place& place, bool& out);
    Result<void> read(const PlistObject& object, const Place& place, std::int64_t& out);
    Result<void> read(const PlistObject& object, const Place& place, std::uint32_t& out);
    template <NamedEnum Enum>
    Result<void> read(const PlistObject& object, const Place& place, Enum& out);
    template <class Element>
    Result<void> read(const PlistObject& object, const Place& place, std::vector<Element>& out);
    template <class Value>
    Result<void> read(const PlistObject& object, const Place& place, std::optional<Value>& out) {
        return read(object, place, out.emplace());
    }

    template <RecordType Record>
    Result<void> readPair(const PlistObject& dictionary, std::size_t index, const Place& place,
                          Record& out, Seen<Record>& seen);
    template <RecordType Record>
    static Result<void> checkComplete(const Place& place, const Seen<Record>& seen);

    Result<PlistObject> member(const PlistObject& container, std::size_t index,
                               const Place& place) const;
    static Result<void> expect(const PlistObject& object, PlistKind kind, const Place& place);

    const PlistReader& m_reader;
    CodingBudget m_budget;
};

/// An error of the reader, at its place.
tl::unexpected<Error> failAt(Error error, const Place& place) {
    return fail(std::move(error.what), place.text());
}

bool isText(const PlistObject& object) {
    return object.kind == PlistKind::asciiText || object.kind == PlistKind::utf16Text;
}

tl::unexpected<Error> wrongKindAt(PlistKind expected, const PlistObject& object,
                                  const Place& place) {
    return fail(wrongKind(PlistReader::nameOf(expected), PlistReader::nameOf(object.kind)),
                place.text());
}

tl::unexpected<Error> overBudget(const Place& place) {
    return fail(std::string(CodingBudget::exceeded), place.text());
}

Result<PlistObject> CfgDecoder::member(const PlistObject& container, std::size_t index,
                                       const Place& place) const {
    Result<PlistObject> object = m_reader.member(container, index);
    if (!object)
        return failAt(std::move(object.error()), place);
    return object;
}

Result<void> CfgDecoder::expect(const PlistObject& object, PlistKind kind, const Place& place) {
    if (object.kind != kind)
        return wrongKindAt(kind, object, place);
    return {};
}

Result<void> CfgDecoder::read(const PlistObject& object, const Place& place, std::string& out) {
    if (!isText(object))
        return wrongKindAt(PlistKind::asciiText, object, place);
    Result<std::string> text = PlistReader::text(object);
    if (!text)
        return failAt(std::move(text.error()), place);
    if (!m_budget.spend(text->size()))
        return overBudget(place);
    out = std::move(*text);
    return {};
}

Result<void> CfgDecoder::read(const PlistObject& object, const Place& place, bool& out) {
    out = object.isTrue;
    return expect(object, PlistKind::boolean, place);
}

Result<void> CfgDecoder::read(const PlistObject& object, const Place& place, std::int64_t& out) {
    if (Result<void> right = expect(object, PlistKind::integer, place); !right)
        return right;
    Result<std::int64_t> value = PlistReader::integer(object);
    if (!value)
        return failAt(std::move(value.error()), place);
    out = *value;
    return {};
}

Result<void> CfgDecoder::read(const PlistObject& object, const Place& place, std::uint32_t& out) {
    std::int64_t value = 0;
    if (Result<void> right = read(object, place, value); !right)
        return right;
    if (value < 0 || value > std::numeric_limits<std::uint32_t>::max())
        return fail(std::to_string(value) + " is out of range", place.text());
    out = static_cast<std::uint32_t>(value);
    return {};
}

template <NamedEnum Enum>
Result<void> CfgDecoder::read(const PlistObject& object, const Place& place, Enum& out) {
    if (!isText(object))
        return wrongKindAt(PlistKind::asciiText, object, place);
    for (const auto& entry : NamesOf<Enum>::list) {
        if (PlistReader::textEquals(object, entry.name)) {
            out = entry.value;
            return {};
        }
    }
    Result<std::string> text = PlistReader::text(object);
    if (!text)
        return failAt(std::move(text.error()), place);
    return fail(quoted(*text) + " is not " + std::string(NamesOf<Enum>::what), place.text());
}

template <class Element>
Result<void> CfgDecoder::read(const PlistObject& object, const Place& place,
                              std::vector<Element>& out) {
    if (Result<void> right = expect(object, PlistKind::array, place); !right)
        return right;
    if (!m_budget.spend(object.count, CodingBudget::elementCost<Element>()))
        return overBudget(place);
    // A count alone reserves nothing: distinct elements take at least some bytes of the document.
    constexpr std::size_t shortestElement = 16;
    out.reserve(std::min(object.count, m_reader.documentSize() / shortestElement));
    for (std::size_t i = 0; i < object.count; ++i) {
        const Place inside(place, i);
        const Result<PlistObject> element = member(object, i, inside);
        if (!element)
            return tl::unexpected(element.error());
        if (Result<void> done = read(*element, inside, out.emplace_back()); !done)
            return done;
    }
    return {};
}

template <RecordType Record>
Result<void> CfgDecoder::read(const PlistObject& object, const Place& place, Record& out) {
    if (Result<void> right = expect(object, PlistKind::dictionary, place); !right)
        return right;
    constexpr std::size_t known = fieldCount<Record>;
    if (object.count > known &&
        !m_budget.spend(object.count - known, CodingBudget::unknownKeyCost)) {
        return overBudget(place);
    }
    Seen<Record> seen;
    for (std::size_t i = 0; i < object.count; ++i) {
        if (Result<void> done = readPair(object, i, place, out, seen); !done)
            return done;
    }
    return checkComplete<Record>(place, seen);
}

template <RecordType Record>
Result<void> CfgDecoder::readPair(const PlistObject& dictionary, std::size_t index,
                                  const Place& place, Record& out, Seen<Record>& seen) {
    const Result<PlistObject> key = member(dictionary, index, place);
    if (!key)
        return tl::unexpected(key.error());
    if (!isText(*key))
        return fail(wrongKind("a string as the key", PlistReader::nameOf(key->kind)), place.text());
    Result<void> done;
    std::size_t position = 0;
    // True when the key is this field's: the walk over the fields ends there.
    const auto readField = [&](const auto& field) {
        const std::size_t bit = position++;
        if (!PlistReader::textEquals(*key, field.key))
            return false;
        const Place inside(place, field.key);
        if (seen.test(bit)) {
            done = fail("the key appears twice", inside.text());
            return true;
        }
        seen.set(bit);
        const Result<PlistObject> value = member(dictionary, dictionary.count + index, inside);
        done = value ? read(*value, inside, out.*field.member) : tl::unexpected(value.error());
        return true;
    };
    std::apply([&](const auto&... field) { (readField(field) || ...); }, FieldsOf<Record>::list);
    return done;
}

template <RecordType Record>
Result<void> CfgDecoder::checkComplete(const Place& place, const Seen<Record>& seen) {
    std::string_view missing;
    std::size_t position = 0;
    const auto check = [&](const auto& field) {
        const bool isMissing = !seen.test(position++) && field.presence == Presence::required;
        if (isMissing && missing.empty())
            missing = field.key;
    };
    std::apply([&](const auto&... field) { (check(field), ...); }, FieldsOf<Record>::list);
    if (!missing.empty())
        return fail(std::string(missingKey), Place(place, missing).text());
    return {};
}

} // namespace

Result<Cfg> decodeCfg(ByteView bytes) {
    const Result<PlistReader> reader = PlistReader::open(bytes);
    if (!reader)
        return tl::unexpected(reader.error());
    const Result<PlistObject> root = reader->root();
    if (!root)
        return tl::unexpected(root.error());
    Cfg cfg;
    if (Result<void> done = CfgDecoder(*reader).read(*root, Place(), cfg); !done)
        return tl::unexpected(std::move(done.error()));
    return cfg;
}

} // namespace tamsel
