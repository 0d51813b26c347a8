#pragma once

#include "base/bytes.h"

#include <cstdlib>
#include <plist/plist.h>
#include <string>

namespace tamsel::test {

inline Bytes binaryOf(plist_t root) {
    char* out = nullptr;
    std::uint32_t length = 0;
    plist_to_bin(root, &out, &length);
    Bytes bytes(out, out + length);
    std::free(out);
    return bytes;
}

/// The C library's binary form of a property list in XML, given what the root holds.
inline Bytes binaryOfXml(const std::string& body) {
    const std::string xml = "<plist version=\"1.0\">" + body + "</plist>";
    plist_t root = nullptr;
    plist_from_xml(xml.data(), static_cast<std::uint32_t>(xml.size()), &root);
    const Bytes bytes = root != nullptr ? binaryOf(root) : Bytes();
    plist_free(root);
    return bytes;
}

} // namespace tamsel::test
