#pragma once

#include "base/bytes.h"

#include <string>
#include <string_view>
#include <vector>

namespace tamsel::test {

/// A binary property list put together by hand: objects as raw bytes, one-byte references, the
/// first object the root; the trailer's fields can be spoilt afterwards.
struct RawPlist {
    std::vector<std::string> objects;
    std::uint64_t count = 0;
    std::uint64_t root = 0;
    std::uint64_t table = 0;
    std::vector<std::uint32_t> offsets;
    std::uint8_t offsetSize = 4;
    std::uint8_t referenceSize = 1;

    explicit RawPlist(std::vector<std::string> list) : objects(std::move(list)) {
        count = objects.size();
        table = 8;
        for (const std::string& object : objects) {
            offsets.push_back(static_cast<std::uint32_t>(table));
            table += object.size();
        }
    }

    Bytes bytes() const {
        std::string out = "bplist00";
        for (const std::string& object : objects) {
            out += object;
        }
        for (const std::uint32_t offset : offsets) {
            put(out, offset, 4);
        }
        out.append(6, '\0');
        put(out, offsetSize, 1);
        put(out, referenceSize, 1);
        put(out, count, 8);
        put(out, root, 8);
        put(out, table, 8);
        return {out.begin(), out.end()};
    }

    static void put(std::string& out, std::uint64_t value, unsigned width) {
        while (width-- > 0) {
            out += static_cast<char>(value >> (8 * width));
        }
    }
};

/// "\x57version" for "version": an ASCII text of less than 15 characters.
inline std::string asciiObject(std::string_view text) {
    return static_cast<char>(0x50 + text.size()) + std::string(text);
}

/// A dictionary or array of up to 65535 references with its count in two bytes.
inline std::string wideContainer(char type, const std::string& references, std::size_t count) {
    std::string object = {static_cast<char>(type | 0x0F), '\x11'};
    RawPlist::put(object, count, 2);
    return object + references;
}

} // namespace tamsel::test
