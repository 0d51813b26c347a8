#pragma once

#include "base/bytes.h"
#include "base/error.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tamsel {

enum class PlistKind {
    null,
    boolean,
    integer,
    real,
    date,
    data,
    asciiText,
    utf16Text,
    uid,
    array,
    set,
    dictionary,
};

/// One object of a document, its extent checked. `count` is what the marker counts: characters,
/// UTF-16 units, elements or pairs. `payload` is a text's characters, an integer's bytes, or an
/// array's or dictionary's references (all keys, then all values).
struct PlistObject {
    PlistKind kind = PlistKind::null;
    bool isTrue = false;
    std::size_t count = 0;
    ByteView payload = {};
};

/// The objects of a binary property list, each read where it lies when it is asked for. Safe on any
/// bytes: opening checks the trailer, every access checks its reference, offset and extent. Nothing
/// is followed on its own, so loops among objects do no harm. Errors have no `where`. The bytes
/// must outlive the reader and its objects.
class PlistReader {
public:
    static Result<PlistReader> open(ByteView document);

    std::size_t documentSize() const { return m_bytes.size(); }

    Result<PlistObject> root() const { return object(m_root); }
    /// The object behind the reference at `index` of an array's or dictionary's payload.
    Result<PlistObject> member(const PlistObject& container, std::size_t index) const;

    /// The value of an integer object; fails when it needs more than 64 bits with sign.
    static Result<std::int64_t> integer(const PlistObject& object);
    /// The text of a string object as UTF-8.
    static Result<std::string> text(const PlistObject& object);
    /// Whether a string object is exactly this ASCII text.
    static bool textEquals(const PlistObject& object, std::string_view ascii);

    /// "a string", "an integer" and so on.
    static std::string_view nameOf(PlistKind kind);

private:
    explicit PlistReader(ByteView document) : m_bytes(document) {}

    Result<PlistObject> object(std::uint64_t reference) const;
    /// Where the object stands.
    Result<std::size_t> placeOf(std::uint64_t reference) const;
    Result<PlistObject> sized(PlistKind kind, std::uint8_t marker, std::size_t at,
                              std::size_t unitSize) const;

    ByteView m_bytes;
    std::uint64_t m_root = 0;
    std::uint64_t m_objectCount = 0;
    /// Also where the objects end.
    std::size_t m_offsetTable = 0;
    std::size_t m_offsetSize = 0;
    std::size_t m_referenceSize = 0;
};

} // namespace tamsel
