#include "base/unicode.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace tamsel {

namespace {

constexpr char32_t invalid = 0xFFFFFFFF;

struct Decoded {
    char32_t point;
    std::size_t length;
};

/// The character at the start of a text that is not empty; `invalid` for a malformed one.
Decoded decodeUtf8(std::string_view text) {
    const auto byte = [&](std::size_t at) { return static_cast<std::uint8_t>(text[at]); };
    const std::uint8_t lead = byte(0);
    if (lead < 0x80)
        return {lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length)
        return {invalid, 1};
    char32_t point = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80)
            return {invalid, 1};
        point = (point << 6U) | (byte(i) & 0x3FU);
    }
    constexpr std::array<char32_t, 5> smallest = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = point >= 0xD800 && point <= 0xDFFF;
    if (point < smallest[length] || point > 0x10FFFF || isSurrogate)
        return {invalid, 1};
    return {point, length};
}

void appendUtf8(std::string& out, char32_t point) {
    const auto tail = [&](unsigned shift) {
        out.push_back(static_cast<char>(0x80U | ((point >> shift) & 0x3FU)));
    };
    if (point < 0x80) {
        out.push_back(static_cast<char>(point));
    } else if (point < 0x800) {
        out.push_back(static_cast<char>(0xC0U | (point >> 6U)));
        tail(0);
    } else if (point < 0x10000) {
        out.push_back(static_cast<char>(0xE0U | (point >> 12U)));
        tail(6);
        tail(0);
    } else {
        out.push_back(static_cast<char>(0xF0U | (point >> 18U)));
        tail(12);
        tail(6);
        tail(0);
    }
}

} // namespace

bool isAscii(std::string_view text) {
    std::uint8_t seen = 0;
    for (const char c : text)
        seen |= static_cast<std::uint8_t>(c);
    return seen < 0x80;
}

bool isAscii(ByteView text) {
    std::uint8_t seen = 0;
    for (const std::uint8_t c : text)
        seen |= c;
    return seen < 0x80;
}

std::optional<std::size_t> utf16Length(std::string_view utf8) {
    std::size_t units = 0;
    while (!utf8.empty()) {
        const Decoded next = decodeUtf8(utf8);
        if (next.point == invalid)
            return std::nullopt;
        units += next.point >= 0x10000 ? 2 : 1;
        utf8.remove_prefix(next.length);
    }
    return units;
}

void appendUtf16(Bytes& out, std::string_view utf8) {
    const auto unit = [&](char32_t value) {
        out.push_back(static_cast<std::uint8_t>(value >> 8U));
        out.push_back(static_cast<std::uint8_t>(value & 0xFFU));
    };
    while (!utf8.empty()) {
        const Decoded next = decodeUtf8(utf8);
        if (next.point >= 0x10000) {
            unit(0xD800 + ((next.point - 0x10000) >> 10U));
            unit(0xDC00 + ((next.point - 0x10000) & 0x3FFU));
        } else {
            unit(next.point);
        }
        utf8.remove_prefix(next.length);
    }
}

std::optional<std::string> utf8FromUtf16(ByteView utf16) {
    const auto unit = [&](std::size_t at) {
        return static_cast<char32_t>((utf16[at] << 8U) | utf16[at + 1]);
    };
    std::string out;
    out.reserve(utf16.size());
    for (std::size_t at = 0; at < utf16.size(); at += 2) {
        char32_t point = unit(at);
        if (point >= 0xD800 && point <= 0xDFFF) {
            const bool isPair = point < 0xDC00 && at + 4 <= utf16.size() &&
                                unit(at + 2) >= 0xDC00 && unit(at + 2) <= 0xDFFF;
            if (!isPair)
                return std::nullopt;
            point = 0x10000 + ((point - 0xD800) << 10U) + (unit(at + 2) - 0xDC00);
            at += 2;
        }
        appendUtf8(out, point);
    }
    return out;
}

std::string quoted(std::string_view utf8) {
    constexpr std::size_t longest = 40;
    std::string out = "\"";
    while (!utf8.empty()) {
        const Decoded next = decodeUtf8(utf8);
        if (out.size() + next.length > longest)
            return out + "…\"";
        const bool isPlain =
            next.point != invalid && next.point >= 0x20 && (next.point < 0x7F || next.point > 0x9F);
        out += isPlain ? utf8.substr(0, next.length) : "?";
        utf8.remove_prefix(next.length);
    }
    return out + "\"";
}

} // namespace tamsel
