#include "config/cfg_samples.h"
#include "config/xml_plist.h"

#include <gtest/gtest.h>

// An independent reader and writer of the format: the C library.

namespace tamsel {
namespace {

plist_t parse(const Bytes& bytes) {
    plist_t root = nullptr;
    plist_from_bin(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::uint32_t>(bytes.size()), &root);
    return root;
}

std::string text(plist_t node) {
    char* value = nullptr;
    plist_get_string_val(node, &value);
    std::string copy = value != nullptr ? value : "(no text)";
    std::free(value);
    return copy;
}

TEST(CfgOracle, libraryReadsWhatWeWrite) {
    const Result<Bytes> bytes = encodeCfg(test::fullCfg());
    ASSERT_TRUE(bytes);
    plist_t root = parse(*bytes);
    ASSERT_EQ(plist_get_node_type(root), PLIST_DICT);
    EXPECT_EQ(plist_dict_get_size(root), 7U);
    EXPECT_EQ(text(plist_dict_get_item(root, "version")), "1.0");
    EXPECT_EQ(text(plist_dict_get_item(root, "grabScope")), "selected");
    plist_t mappings = plist_dict_get_item(root, "mappings");
    ASSERT_EQ(plist_array_get_size(mappings), 3U);
    plist_t shortcuts = plist_dict_get_item(root, "shortcuts");
    ASSERT_EQ(plist_array_get_size(shortcuts), 5U);
    plist_t first = plist_array_get_item(shortcuts, 0);
    EXPECT_EQ(plist_get_node_type(plist_dict_get_item(first, "enabled")), PLIST_BOOLEAN);
    EXPECT_EQ(text(plist_dict_get_item(first, "title")), "Wenlo輸入法 🎹");
    EXPECT_EQ(text(plist_access_path(first, 2, "actionUp", "value")), "wenlo://stop");
    plist_t second = plist_array_get_item(shortcuts, 1);
    EXPECT_EQ(plist_dict_get_size(second), 5U);
    EXPECT_EQ(plist_dict_get_item(second, "actionUp"), nullptr);
    std::uint64_t code = 0;
    plist_get_uint_val(plist_access_path(mappings, 3, 2, "to", "keyCode"), &code);
    EXPECT_EQ(code, 4294967295U);
    plist_get_uint_val(plist_access_path(root, 3, "excludedKeyboards", 0, "productID"), &code);
    EXPECT_EQ(static_cast<std::int64_t>(code), -1);
    plist_free(root);
}

TEST(CfgOracle, weReadWhatTheLibraryWrites) {
    Cfg cfg = test::fullCfg();
    // The library ends texts at a null character and has no negative numbers.
    cfg.shortcuts[1].title = "plain";
    cfg.excludedKeyboards[0].productID = 1;
    cfg.mouseDevices[0].productID = 1;
    const Result<Bytes> bytes = encodeCfg(cfg);
    ASSERT_TRUE(bytes);
    plist_t root = parse(*bytes);
    const Bytes rewritten = test::binaryOf(root);
    plist_free(root);
    ASSERT_NE(rewritten, *bytes);
    const Result<Cfg> again = decodeCfg(rewritten);
    ASSERT_TRUE(again) << again.error().description();
    EXPECT_EQ(*again, cfg);
}

} // namespace
} // namespace tamsel
