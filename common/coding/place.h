#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tamsel {

/// A place inside a document: a chain of frames on the stack of a coder, one for each key or index
/// on the way down. It costs nothing until an error asks for its text.
class Place {
public:
    /// The document itself.
    Place() = default;
    /// Inside `parent`, which must outlive this one, as must the key's characters.
    Place(const Place& parent, std::string_view key) : m_parent(&parent), m_key(key) {}
    Place(const Place& parent, std::size_t index) : m_parent(&parent), m_index(index) {}

    /// For example "shortcuts[3].action.type"; empty for the document itself.
    std::string text() const {
        if (m_parent == nullptr)
            return {};
        const std::string above = m_parent->text();
        if (m_key.empty())
            return above + "[" + std::to_string(m_index) + "]";
        return (above.empty() ? above : above + ".") + std::string(m_key);
    }

private:
    const Place* m_parent = nullptr;
    std::string_view m_key = {};
    std::size_t m_index = 0;
};

} // namespace tamsel
