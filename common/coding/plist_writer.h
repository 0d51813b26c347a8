#pragma once

#include "base/bytes.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tamsel {

/// Writes a binary property list front to back. An object gets its reference when it is written;
/// containers are begun with room for their references, which are filled in as the members come.
/// The first object is the root.
class PlistWriter {
public:
    using Reference = std::uint32_t;

    /// `mostObjects` is an upper bound of the objects that will be written, below 2^32;
    /// `textBytes` is about how much text they have.
    PlistWriter(std::size_t mostObjects, std::size_t textBytes);

    Reference boolean(bool value);
    Reference integer(std::int64_t value);
    /// `utf8` must be well-formed. ASCII where that is enough, else UTF-16.
    Reference string(std::string_view utf8);

    /// A container that was begun: the member at `slot` is set exactly once. A dictionary of n
    /// pairs has its keys in slots 0 to n-1 and their values in the n slots after.
    struct Container {
        Reference reference;
        std::size_t slots;
    };
    Container beginArray(std::size_t count);
    Container beginDictionary(std::size_t pairs);
    void set(const Container& container, std::size_t slot, Reference member);

    /// The document. Nothing may be written after it.
    Bytes finish() &&;

private:
    Reference begin();
    void putMarker(std::uint8_t type, std::size_t count);
    void putInteger(std::int64_t value);
    void put(std::uint64_t value, std::size_t width);

    Bytes m_out;
    std::vector<std::size_t> m_offsets;
    std::size_t m_referenceSize;
};

} // namespace tamsel
