#include "platform/linux/updater/xml_shape.h"

#include <string_view>

namespace tamsel {

namespace {

/// The end of a tag that begins at `at`, past its last character, and how many values it has.
struct Tag {
    std::size_t end;
    int values = 0;
    bool isEmpty = false; ///< "<a/>"
};

Tag tagAt(std::string_view xml, std::size_t at) {
    Tag tag{xml.size()};
    for (std::size_t i = at + 1; i < xml.size(); ++i) {
        const char c = xml[i];
        if (c == '>') {
            tag.end = i + 1;
            tag.isEmpty = xml[i - 1] == '/';
            return tag;
        }
        if (c != '"' && c != '\'')
            continue;
        ++tag.values;
        // A value's other kind of quote, and a ">", are only text.
        i = xml.find(c, i + 1);
        if (i == std::string_view::npos)
            return tag;
    }
    return tag;
}

} // namespace

Result<void> checkXmlShape(const QByteArray& bytes, const XmlLimits& limits) {
    const std::string_view xml(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    const auto past = [&xml](std::size_t from, std::string_view end) {
        const auto at = xml.find(end, from);
        return at == std::string_view::npos ? xml.size() : at + end.size();
    };
    int depth = 0;
    for (std::size_t at = xml.find('<'); at < xml.size(); at = xml.find('<', at)) {
        const std::string_view rest = xml.substr(at);
        if (rest.starts_with("<!--")) {
            at = past(at + 4, "-->");
        } else if (rest.starts_with("<![CDATA[")) {
            at = past(at + 9, "]]>");
        } else if (rest.starts_with("<?")) {
            at = past(at + 2, "?>");
        } else if (rest.starts_with("<!")) {
            return fail("a document type is not allowed");
        } else {
            const Tag tag = tagAt(xml, at);
            const bool isEnd = rest.starts_with("</");
            depth += isEnd ? -1 : 1;
            if (tag.values > limits.attributes || depth > limits.depth)
                return fail("is not built like a feed");
            if (tag.isEmpty && !isEnd)
                --depth;
            at = tag.end;
        }
    }
    return {};
}

} // namespace tamsel
