#include "config/cfg_samples.h"
#include "config/xml_plist.h"

#include <gtest/gtest.h>

namespace tamsel {
namespace {

/// A pair of a dictionary; values are given as XML.
std::string pair(const std::string& key, const std::string& value) {
    return "<key>" + key + "</key>" + value;
}

const std::string version = pair("version", "<string>1.0</string>");
const std::string noMappings = pair("mappings", "<array/>");
const std::string noShortcuts = pair("shortcuts", "<array/>");
const std::string key = "<dict><key>keyCode</key><integer>4</integer>"
                        "<key>modifiers</key><array><string>fn</string></array></dict>";
const std::string action = "<dict><key>type</key><string>keyPress</string>"
                           "<key>value</key><string/></dict>";
const std::string id = pair("id", "<string>X</string>");
const std::string enabled = pair("enabled", "<true/>");
const std::string combo = id + enabled + pair("title", "<string/>") + pair("keys", key);

std::string dict(const std::string& pairs) {
    return "<dict>" + pairs + "</dict>";
}

std::string mapping(const std::string& pairs) {
    return dict(version + noShortcuts + pair("mappings", "<array>" + dict(pairs) + "</array>"));
}

/// The combo in question is the second one.
std::string shortcut(const std::string& pairs) {
    return dict(version + noMappings +
                pair("shortcuts",
                     "<array>" + dict(combo + pair("action", action)) + dict(pairs) + "</array>"));
}

std::string keyboards(const std::string& value) {
    return dict(version + noMappings + noShortcuts + pair("excludedKeyboards", value));
}

TEST(CfgErrors, nameTheFieldAndTheFault) {
    const std::string keyCode = "mappings[0].from.keyCode";
    const auto from = [](const std::string& pairs) {
        return mapping(id + enabled + pair("to", key) + pair("from", dict(pairs)));
    };
    const auto actionOf = [](const std::string& pairs) {
        return shortcut(combo + pair("action", dict(pairs)));
    };
    const std::string someKeys = pair("modifiers", "<array/>");
    const struct {
        std::string xml;
        std::string error;
    } cases[] = {
        {"<array/>", "expected a dictionary, found an array"},
        {dict(""), "version: the key is missing"},
        {dict(version + noMappings), "shortcuts: the key is missing"},
        {dict(pair("version", "<integer>1</integer>") + noMappings + noShortcuts),
         "version: expected a string, found an integer"},
        {dict(version + pair("mappings", dict("")) + noShortcuts),
         "mappings: expected an array, found a dictionary"},
        {mapping(enabled + pair("from", key) + pair("to", key)),
         "mappings[0].id: the key is missing"},
        {mapping(id + pair("enabled", "<integer>1</integer>") + pair("from", key)),
         "mappings[0].enabled: expected a boolean, found an integer"},
        {mapping(id + enabled + pair("from", key)), "mappings[0].to: the key is missing"},
        {from(someKeys), keyCode + ": the key is missing"},
        {from(pair("keyCode", "<string>4</string>")),
         keyCode + ": expected an integer, found a string"},
        {from(pair("keyCode", "<real>4</real>")),
         keyCode + ": expected an integer, found a real number"},
        {from(pair("keyCode", "<integer>4294967296</integer>")),
         keyCode + ": 4294967296 is out of range"},
        {from(pair("keyCode", "<integer>4</integer>") +
              pair("modifiers", "<array><string>fn</string><data>AA==</data></array>")),
         "mappings[0].from.modifiers[1]: expected a string, found data"},
        {shortcut(combo), "shortcuts[1].action: the key is missing"},
        {shortcut(id + enabled + pair("keys", key) + pair("action", action)),
         "shortcuts[1].title: the key is missing"},
        {actionOf(pair("type", "<string>KeyPress</string>")),
         "shortcuts[1].action.type: \"KeyPress\" is not an action type"},
        {actionOf(pair("type", "<string>é&#10;0123456789012345678901234567890123456789</string>")),
         "shortcuts[1].action.type: \"é?012345678901234567890123456789012345…\" is not an action "
         "type"},
        {actionOf(pair("type", "<string>command</string>")),
         "shortcuts[1].action.value: the key is missing"},
        {shortcut(combo + pair("action", action) + pair("actionUp", "<dict/>")),
         "shortcuts[1].actionUp.type: the key is missing"},
        {shortcut(combo + pair("action", action) + pair("actionUp", "<string/>")),
         "shortcuts[1].actionUp: expected a dictionary, found a string"},
        {keyboards("<array><date>2024-01-01T00:00:00Z</date></array>"),
         "excludedKeyboards[0]: expected a dictionary, found a date"},
        {keyboards("<array>" + dict(pair("vendorID", "<integer>1</integer>")) + "</array>"),
         "excludedKeyboards[0].productID: the key is missing"},
        {dict(version + noMappings + noShortcuts + pair("grabScope", "<string>some</string>")),
         "grabScope: \"some\" is not a grab scope"},
    };
    for (const auto& c : cases) {
        const Result<Cfg> cfg = decodeCfg(test::binaryOfXml(c.xml));
        ASSERT_FALSE(cfg) << c.xml;
        EXPECT_EQ(cfg.error().description(), c.error) << c.xml;
    }
}

TEST(CfgErrors, whatMayBeLeftOutOrIsUnknown) {
    const std::string three = version + noMappings + noShortcuts;
    const std::string device =
        dict(pair("vendorID", "<integer>65535</integer>") +
             pair("productID", "<integer>2</integer>") + pair("product", "<string>Maus</string>"));
    const std::string older = pair("grabScope", "<string>selected</string>") +
                              pair("allowedDevices", "<array>" + device + "</array>");
    Cfg migrated;
    migrated.grabScope = GrabScope::selected;
    migrated.allowedDevices = {{65535, 2, "Maus"}};
    const struct {
        std::string pairs;
        Cfg expected;
    } cases[] = {
        {three, Cfg()},
        {three + older, migrated},
        {pair("future", dict(pair("x", "<array/>"))) + three + pair("é", "<true/>"), Cfg()},
    };
    for (const auto& c : cases) {
        const Result<Cfg> cfg = decodeCfg(test::binaryOfXml(dict(c.pairs)));
        ASSERT_TRUE(cfg) << cfg.error().description();
        EXPECT_EQ(*cfg, c.expected) << c.pairs;
    }
}

/// An independent reader and writer of the format: the C library.
TEST(CfgOracle, readsWhatWeWriteAndWritesWhatWeRead) {
    Cfg cfg = test::fullCfg();
    // The library ends texts at a null character and has no negative numbers.
    cfg.shortcuts[1].title = "plain";
    cfg.excludedKeyboards[0].productID = 1;
    cfg.mouseDevices[0].productID = 1;
    const Result<Bytes> bytes = encodeCfg(cfg);
    ASSERT_TRUE(bytes);
    plist_t root = nullptr;
    plist_from_bin(reinterpret_cast<const char*>(bytes->data()),
                   static_cast<std::uint32_t>(bytes->size()), &root);
    const Bytes rewritten = test::binaryOf(root);
    plist_free(root);
    ASSERT_NE(rewritten, *bytes);
    const Result<Cfg> again = decodeCfg(rewritten);
    ASSERT_TRUE(again) << again.error().description();
    EXPECT_EQ(*again, cfg);
}

} // namespace
} // namespace tamsel
