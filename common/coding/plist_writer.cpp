#include "coding/plist_writer.h"

#include "base/unicode.h"
#include "coding/plist_layout.h"

#include <array>
#include <bit>

namespace tamsel {

namespace {

/// The narrowest of 1, 2, 4 and 8 bytes that holds the unsigned value.
std::size_t widthOf(std::uint64_t value) {
    return value <= 0xFF ? 1 : value <= 0xFFFF ? 2 : value <= 0xFFFFFFFF ? 4 : 8;
}

} // namespace

PlistWriter::PlistWriter(std::size_t mostObjects, std::size_t textBytes)
    : m_referenceSize(widthOf(mostObjects)) {
    constexpr std::size_t bytesPerObject = 8;
    m_out.reserve(mostObjects * (bytesPerObject + m_referenceSize) + textBytes);
    m_offsets.reserve(mostObjects);
    m_out.insert(m_out.end(), plist::magic.begin(), plist::magic.end());
}

PlistWriter::Reference PlistWriter::begin() {
    m_offsets.push_back(m_out.size());
    return static_cast<Reference>(m_offsets.size() - 1);
}

PlistWriter::Reference PlistWriter::boolean(bool value) {
    const Reference reference = begin();
    m_out.push_back(value ? plist::markerTrue : plist::markerFalse);
    return reference;
}

PlistWriter::Reference PlistWriter::integer(std::int64_t value) {
    const Reference reference = begin();
    putInteger(value);
    return reference;
}

PlistWriter::Reference PlistWriter::string(std::string_view utf8) {
    const Reference reference = begin();
    if (isAscii(utf8)) {
        putMarker(plist::asciiText, utf8.size());
        m_out.insert(m_out.end(), utf8.begin(), utf8.end());
    } else {
        putMarker(plist::utf16Text, utf16Length(utf8).value_or(0));
        appendUtf16(m_out, utf8);
    }
    return reference;
}

PlistWriter::Container PlistWriter::beginArray(std::size_t count) {
    const Reference reference = begin();
    putMarker(plist::array, count);
    const std::size_t slots = m_out.size();
    m_out.resize(slots + count * m_referenceSize);
    return {reference, slots};
}

PlistWriter::Container PlistWriter::beginDictionary(std::size_t pairs) {
    const Reference reference = begin();
    putMarker(plist::dictionary, pairs);
    const std::size_t slots = m_out.size();
    m_out.resize(slots + 2 * pairs * m_referenceSize);
    return {reference, slots};
}

void PlistWriter::set(const Container& container, std::size_t slot, Reference member) {
    std::uint8_t* at = m_out.data() + container.slots + slot * m_referenceSize;
    for (std::size_t left = m_referenceSize; left > 0; --left)
        *at++ = static_cast<std::uint8_t>(member >> (8 * (left - 1)));
}

Bytes PlistWriter::finish() && {
    const std::size_t table = m_out.size();
    const std::size_t offsetSize = widthOf(table);
    m_out.reserve(table + m_offsets.size() * offsetSize + plist::trailerSize);
    for (const std::size_t offset : m_offsets)
        put(offset, offsetSize);
    const std::size_t trailer = m_out.size();
    m_out.resize(trailer + plist::trailerOffsetSize);
    m_out.push_back(static_cast<std::uint8_t>(offsetSize));
    m_out.push_back(static_cast<std::uint8_t>(m_referenceSize));
    put(m_offsets.size(), 8);
    put(0, 8);
    put(table, 8);
    return std::move(m_out);
}

void PlistWriter::putMarker(std::uint8_t type, std::size_t count) {
    if (count < plist::countFollows) {
        m_out.push_back(static_cast<std::uint8_t>(type | count));
        return;
    }
    m_out.push_back(type | plist::countFollows);
    putInteger(static_cast<std::int64_t>(count));
}

void PlistWriter::putInteger(std::int64_t value) {
    // Below eight bytes the format has unsigned numbers only.
    const std::size_t width = value < 0 ? 8 : widthOf(static_cast<std::uint64_t>(value));
    m_out.push_back(
        static_cast<std::uint8_t>(plist::integer | static_cast<unsigned>(std::countr_zero(width))));
    put(static_cast<std::uint64_t>(value), width);
}

void PlistWriter::put(std::uint64_t value, std::size_t width) {
    for (std::size_t left = width; left > 0; --left)
        m_out.push_back(static_cast<std::uint8_t>(value >> (8 * (left - 1))));
}

} // namespace tamsel
