#include "coding/plist_reader.h"

#include "base/unicode.h"
#include "coding/plist_layout.h"

#include <algorithm>
#include <array>
#include <limits>

namespace tamsel {

namespace {

/// Up to eight bytes, the most significant first.
std::uint64_t bigEndian(ByteView bytes) {
    std::uint64_t value = 0;
    for (const std::uint8_t byte : bytes)
        value = (value << 8U) | byte;
    return value;
}

bool isWidth(std::size_t size) {
    return size >= 1 && size <= 8;
}

tl::unexpected<Error> unknownObject() {
    return fail("an object of an unknown type");
}

Result<PlistObject> simpleObject(std::uint8_t marker) {
    if (marker == plist::markerNull)
        return PlistObject{};
    if (marker == plist::markerFalse || marker == plist::markerTrue)
        return PlistObject{.kind = PlistKind::boolean, .isTrue = marker == plist::markerTrue};
    return unknownObject();
}

} // namespace

Result<PlistReader> PlistReader::open(ByteView document) {
    using namespace plist;
    const bool hasMagic =
        document.size() >= magic.size() && std::equal(magic.begin(), magic.end(), document.begin());
    if (!hasMagic)
        return fail("not a binary property list");
    if (document.size() < magic.size() + trailerSize)
        return fail("the property list is cut short");
    const std::size_t trailerAt = document.size() - trailerSize;
    const ByteView trailer = document.subspan(trailerAt);
    PlistReader reader(document);
    reader.m_offsetSize = trailer[trailerOffsetSize];
    reader.m_referenceSize = trailer[trailerReferenceSize];
    reader.m_objectCount = bigEndian(trailer.subspan(trailerObjectCount, 8));
    reader.m_root = bigEndian(trailer.subspan(trailerRoot, 8));
    const std::uint64_t table = bigEndian(trailer.subspan(trailerOffsetTable, 8));

    const bool isSound = isWidth(reader.m_offsetSize) && isWidth(reader.m_referenceSize) &&
                         table >= magic.size() && table <= trailerAt &&
                         reader.m_objectCount <= (trailerAt - table) / reader.m_offsetSize &&
                         reader.m_root < reader.m_objectCount;
    if (!isSound)
        return fail("the property list's trailer is damaged");
    reader.m_offsetTable = static_cast<std::size_t>(table);
    return reader;
}

Result<PlistObject> PlistReader::member(const PlistObject& container, std::size_t index) const {
    return object(bigEndian(container.payload.subspan(index * m_referenceSize, m_referenceSize)));
}

Result<std::size_t> PlistReader::placeOf(std::uint64_t reference) const {
    if (reference >= m_objectCount)
        return fail("a reference points at no object");
    const std::size_t entry = m_offsetTable + static_cast<std::size_t>(reference) * m_offsetSize;
    const std::uint64_t at = bigEndian(m_bytes.subspan(entry, m_offsetSize));
    if (at < plist::magic.size() || at >= m_offsetTable)
        return fail("an object lies outside the property list");
    return static_cast<std::size_t>(at);
}

Result<PlistObject> PlistReader::object(std::uint64_t reference) const {
    const auto at = placeOf(reference);
    if (!at)
        return tl::unexpected(at.error());
    const std::uint8_t marker = m_bytes[*at];
    const std::size_t next = *at + 1;
    switch (marker & 0xF0U) {
    case plist::simple:
        return simpleObject(marker);
    case plist::integer: {
        const std::size_t width = std::size_t{1} << (marker & 0x0FU);
        if (width > 16)
            break;
        if (width > m_offsetTable - next)
            return fail("an object is cut short");
        return PlistObject{.kind = PlistKind::integer, .payload = m_bytes.subspan(next, width)};
    }
    case plist::real:
        return PlistObject{.kind = PlistKind::real};
    case plist::date:
        return PlistObject{.kind = PlistKind::date};
    case plist::data:
        return PlistObject{.kind = PlistKind::data};
    case plist::asciiText:
        return sized(PlistKind::asciiText, marker, next, 1);
    case plist::utf16Text:
        return sized(PlistKind::utf16Text, marker, next, 2);
    case plist::uid:
        return PlistObject{.kind = PlistKind::uid};
    case plist::array:
        return sized(PlistKind::array, marker, next, m_referenceSize);
    case plist::set:
        return PlistObject{.kind = PlistKind::set};
    case plist::dictionary:
        return sized(PlistKind::dictionary, marker, next, 2 * m_referenceSize);
    default:
        break;
    }
    return unknownObject();
}

Result<PlistObject> PlistReader::sized(PlistKind kind, std::uint8_t marker, std::size_t at,
                                       std::size_t unitSize) const {
    std::uint64_t count = marker & 0x0FU;
    if (count == plist::countFollows) {
        const std::size_t left = m_offsetTable - at;
        const std::size_t width = left > 0 ? std::size_t{1} << (m_bytes[at] & 0x0FU) : 0;
        if (left == 0 || (m_bytes[at] & 0xF0U) != plist::integer || width > 8 || width >= left)
            return fail("an object's length is damaged");
        count = bigEndian(m_bytes.subspan(at + 1, width));
        at += 1 + width;
    }
    if (count > (m_offsetTable - at) / unitSize)
        return fail("an object is cut short");
    const auto size = static_cast<std::size_t>(count);
    return PlistObject{
        .kind = kind, .count = size, .payload = m_bytes.subspan(at, size * unitSize)};
}

Result<std::int64_t> PlistReader::integer(const PlistObject& object) {
    // One, two and four bytes are unsigned, eight are signed, sixteen are signed too.
    const ByteView bytes = object.payload;
    const ByteView low = bytes.size() > 8 ? bytes.last(8) : bytes;
    const auto value = static_cast<std::int64_t>(bigEndian(low));
    if (bytes.size() > 8) {
        const std::uint64_t high = bigEndian(bytes.first(8));
        const std::uint64_t sign = value < 0 ? std::numeric_limits<std::uint64_t>::max() : 0;
        if (high != sign)
            return fail("the integer does not fit in 64 bits");
    }
    return value;
}

Result<std::string> PlistReader::text(const PlistObject& object) {
    if (object.kind == PlistKind::asciiText) {
        if (!isAscii(object.payload))
            return fail("the text has bytes that are not ASCII");
        return std::string(object.payload.begin(), object.payload.end());
    }
    std::optional<std::string> utf8 = utf8FromUtf16(object.payload);
    if (!utf8)
        return fail("the text is not valid UTF-16");
    return std::move(*utf8);
}

bool PlistReader::textEquals(const PlistObject& object, std::string_view ascii) {
    if (object.count != ascii.size())
        return false;
    if (object.kind == PlistKind::asciiText)
        return std::equal(ascii.begin(), ascii.end(), object.payload.begin());
    for (std::size_t i = 0; i < ascii.size(); ++i) {
        const bool isSame = object.payload[2 * i] == 0 &&
                            object.payload[2 * i + 1] == static_cast<std::uint8_t>(ascii[i]);
        if (!isSame)
            return false;
    }
    return true;
}

std::string_view PlistReader::nameOf(PlistKind kind) {
    switch (kind) {
    case PlistKind::null:
        return "a null";
    case PlistKind::boolean:
        return "a boolean";
    case PlistKind::integer:
        return "an integer";
    case PlistKind::real:
        return "a real number";
    case PlistKind::date:
        return "a date";
    case PlistKind::data:
        return "data";
    case PlistKind::asciiText:
    case PlistKind::utf16Text:
        return "a string";
    case PlistKind::uid:
        return "a UID";
    case PlistKind::array:
        return "an array";
    case PlistKind::set:
        return "a set";
    case PlistKind::dictionary:
        return "a dictionary";
    }
    return {};
}

} // namespace tamsel
