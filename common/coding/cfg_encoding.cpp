#include "coding/cfg_coding.h"

#include "base/unicode.h"
#include "coding/coding_budget.h"
#include "coding/coding_errors.h"
#include "coding/place.h"
#include "coding/plist_writer.h"
#include "records/record_fields.h"

#include <array>
#include <cstdint>
#include <optional>
#include <tuple>
#include <utility>

namespace tamsel {

namespace {

/// The first walk: refuses what the decoder would refuse, and counts, so that the second walk can
/// neither fail nor run out of reference numbers.
class CfgMeasure {
public:
    template <RecordType Record>
    Result<void> add(const Record& record, const Place& place);

    std::size_t objects() const { return m_objects; }
    std::size_t textBytes() const { return m_textBytes; }

private:
    Result<void> add(const std::string& text, const Place& place);
    Result<void> add(bool /*value*/, const Place& /*place*/) { return countObject(); }
    Result<void> add(std::int64_t /*value*/, const Place& /*place*/) { return countObject(); }
    Result<void> add(std::uint32_t /*value*/, const Place& /*place*/) { return countObject(); }
    template <NamedEnum Enum>
    Result<void> add(Enum value, const Place& place);
    template <class Element>
    Result<void> add(const std::vector<Element>& list, const Place& place);
    template <class Value>
    Result<void> add(const std::optional<Value>& value, const Place& place) {
        return value ? add(*value, place) : Result<void>();
    }
    Result<void> countObject() {
        ++m_objects;
        return {};
    }

    CodingBudget m_budget;
    std::size_t m_objects = 0;
    std::size_t m_textBytes = 0;
};

tl::unexpected<Error> overBudget(const Place& place) {
    return fail(std::string(CodingBudget::exceeded), place.text());
}

Result<void> CfgMeasure::add(const std::string& text, const Place& place) {
    if (!m_budget.spend(text.size()))
        return overBudget(place);
    if (!isAscii(text) && !utf16Length(text))
        return fail("the text is not valid UTF-8", place.text());
    m_textBytes += text.size();
    return countObject();
}

template <NamedEnum Enum>
Result<void> CfgMeasure::add(Enum value, const Place& place) {
    if (nameOf(value).empty()) {
        return fail(std::to_string(static_cast<int>(value)) + " is not " +
                        std::string(NamesOf<Enum>::what),
                    place.text());
    }
    return countObject();
}

template <class Element>
Result<void> CfgMeasure::add(const std::vector<Element>& list, const Place& place) {
    if (!m_budget.spend(list.size(), CodingBudget::elementCost<Element>()))
        return overBudget(place);
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (Result<void> done = add(list[i], Place(place, i)); !done)
            return done;
    }
    return countObject();
}

template <RecordType Record>
Result<void> CfgMeasure::add(const Record& record, const Place& place) {
    Result<void> done = countObject();
    const auto addField = [&](const auto& field) {
        done = add(record.*field.member, Place(place, field.key));
        return done.has_value();
    };
    std::apply([&](const auto&... field) { (addField(field) && ...); }, FieldsOf<Record>::list);
    return done;
}

/// References of a record type's keys, each written when it is first needed; 0, the root's, stands
/// for "not yet".
template <RecordType Record>
struct KeyReferences {
    std::array<PlistWriter::Reference, fieldCount<Record>> list{};
};

using AllKeyReferences = std::tuple<KeyReferences<Cfg>, KeyReferences<KeyMapping>,
                                    KeyReferences<KeyDefinition>, KeyReferences<Shortcut>,
                                    KeyReferences<ShortcutAction>, KeyReferences<GrabbedDevice>>;

/// How many objects the keys of all records are at most.
constexpr std::size_t keyObjects = sizeof(AllKeyReferences) / sizeof(PlistWriter::Reference);

/// The second walk: writes what was measured.
class CfgEncoder {
public:
    using Reference = PlistWriter::Reference;

    explicit CfgEncoder(PlistWriter& writer) : m_writer(writer) {}

    template <RecordType Record>
    Reference write(const Record& record);

private:
    Reference write(const std::string& text) { return m_writer.string(text); }
    Reference write(bool value) { return m_writer.boolean(value); }
    Reference write(std::int64_t value) { return m_writer.integer(value); }
    Reference write(std::uint32_t value) { return m_writer.integer(value); }
    template <NamedEnum Enum>
    Reference write(Enum value) {
        return m_writer.string(nameOf(value));
    }
    template <class Element>
    Reference write(const std::vector<Element>& list);

    template <class Value>
    static const Value* present(const Value& value) {
        return &value;
    }
    template <class Value>
    static const Value* present(const std::optional<Value>& value) {
        return value ? &*value : nullptr;
    }

    PlistWriter& m_writer;
    AllKeyReferences m_keys;
};

template <class Element>
PlistWriter::Reference CfgEncoder::write(const std::vector<Element>& list) {
    const PlistWriter::Container array = m_writer.beginArray(list.size());
    for (std::size_t i = 0; i < list.size(); ++i)
        m_writer.set(array, i, write(list[i]));
    return array.reference;
}

template <RecordType Record>
PlistWriter::Reference CfgEncoder::write(const Record& record) {
    std::size_t pairs = 0;
    const auto count = [&](const auto& field) {
        pairs += present(record.*field.member) != nullptr ? 1 : 0;
    };
    std::apply([&](const auto&... field) { (count(field), ...); }, FieldsOf<Record>::list);

    const PlistWriter::Container dictionary = m_writer.beginDictionary(pairs);
    auto& keys = std::get<KeyReferences<Record>>(m_keys).list;
    std::size_t slot = 0;
    std::size_t position = 0;
    const auto writeField = [&](const auto& field) {
        Reference& key = keys[position++];
        const auto* value = present(record.*field.member);
        if (value == nullptr)
            return;
        if (key == 0)
            key = m_writer.string(field.key);
        m_writer.set(dictionary, slot, key);
        m_writer.set(dictionary, pairs + slot, write(*value));
        ++slot;
    };
    std::apply([&](const auto&... field) { (writeField(field), ...); }, FieldsOf<Record>::list);
    return dictionary.reference;
}

} // namespace

Result<Bytes> encodeCfg(const Cfg& cfg) {
    CfgMeasure measure;
    if (Result<void> done = measure.add(cfg, Place()); !done)
        return tl::unexpected(std::move(done.error()));
    PlistWriter writer(measure.objects() + keyObjects, measure.textBytes());
    CfgEncoder(writer).write(cfg);
    return std::move(writer).finish();
}

} // namespace tamsel
