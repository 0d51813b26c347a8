#include "config/cfg_samples.h"
#include "config/raw_plist.h"

#include <gtest/gtest.h>

namespace tamsel {
namespace {

using namespace std::string_literals;
using test::asciiObject;
using test::RawPlist;

TEST(CfgHostile, cutAtEveryLength) {
    const Bytes bytes = encodeCfg(test::fullCfg()).value();
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        const Bytes cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_FALSE(decodeCfg(cut)) << length;
    }
}

/// version, mappings and shortcuts as objects 1 to 6; object 4 is the mappings, 6 the shortcuts.
RawPlist document(std::string mappings, std::vector<std::string> more = {}) {
    std::vector<std::string> objects = {"\xD3\x01\x03\x05\x02\x04\x06",
                                        asciiObject("version"),
                                        asciiObject("1.0"),
                                        asciiObject("mappings"),
                                        std::move(mappings),
                                        asciiObject("shortcuts"),
                                        "\xA0"};
    objects.insert(objects.end(), more.begin(), more.end());
    return RawPlist(std::move(objects));
}

/// A document whose `excludedKeyboards` has one device with this vendor id.
RawPlist vendorDocument(std::string integer) {
    return RawPlist({"\xD4\x01\x03\x04\x05\x02\x06\x06\x07", asciiObject("version"),
                     asciiObject("1.0"), asciiObject("mappings"), asciiObject("shortcuts"),
                     "\x5F\x10\x11"
                     "excludedKeyboards",
                     "\xA0", "\xA1\x08", "\xD3\x09\x0A\x0B\x0C\x0C\x02", asciiObject("vendorID"),
                     asciiObject("productID"), asciiObject("product"), std::move(integer)});
}

std::string errorOf(const Bytes& bytes) {
    const Result<Cfg> cfg = decodeCfg(bytes);
    return cfg ? "accepted" : cfg.error().description();
}

TEST(CfgHostile, damagedTrailersAndObjects) {
    const auto spoilt = [](void (*spoil)(RawPlist&)) {
        RawPlist raw = document("\xA0");
        spoil(raw);
        return raw.bytes();
    };
    const std::string damaged = "the property list's trailer is damaged";
    const std::string outside = "mappings: an object lies outside the property list";
    const struct {
        Bytes bytes;
        std::string error;
    } cases[] = {
        {document("\xA0").bytes(), "accepted"},
        {{}, "not a binary property list"},
        {Bytes(100, '{'), "not a binary property list"},
        {{'b', 'p', 'l', 'i', 's', 't', '0', '0'}, "the property list is cut short"},
        {spoilt([](RawPlist& r) { r.offsetSize = 0; }), damaged},
        {spoilt([](RawPlist& r) { r.offsetSize = 9; }), damaged},
        {spoilt([](RawPlist& r) { r.referenceSize = 0; }), damaged},
        {spoilt([](RawPlist& r) { r.referenceSize = 255; }), damaged},
        {spoilt([](RawPlist& r) { r.count = 0; }), damaged},
        {spoilt([](RawPlist& r) { r.count = 8; }), damaged},
        {spoilt([](RawPlist& r) { r.count = UINT64_MAX / 4 + 2; }), damaged},
        {spoilt([](RawPlist& r) { r.root = 7; }), damaged},
        {spoilt([](RawPlist& r) { r.table = UINT64_MAX - 3; }), damaged},
        {spoilt([](RawPlist& r) { r.table = 7; }), damaged},
        {spoilt([](RawPlist& r) { r.offsets[4] = 7; }), outside},
        {spoilt([](RawPlist& r) { r.offsets[4] = static_cast<std::uint32_t>(r.table); }), outside},
        {spoilt([](RawPlist& r) { r.offsets[4] = UINT32_MAX; }), outside},
        {spoilt([](RawPlist& r) { r.count = 6; }), "shortcuts: a reference points at no object"},
        // The last object runs into the offset table.
        {document("\xA0", {"\xA1"}).bytes(), "accepted"},
        {RawPlist({"\xD3\x01\x02\x03\x04\x05"}).bytes(), "an object is cut short"},
        {document("\xA1\x07").bytes(), "mappings[0]: a reference points at no object"},
        {document("\xAF\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF").bytes(),
         "mappings: an object is cut short"},
        {document("\xAF\x13\x80\0\0\0\0\0\0\1"s).bytes(), "mappings: an object is cut short"},
        {document("\xAF\x14").bytes(), "mappings: an object's length is damaged"},
        {document("\xAF\x51").bytes(), "mappings: an object's length is damaged"},
        {document("\x70").bytes(), "mappings: an object of an unknown type"},
        {document("\x15").bytes(), "mappings: an object of an unknown type"},
        {document(""s + '\0').bytes(), "mappings: expected an array, found a null"},
        {document("\x80\x01").bytes(), "mappings: expected an array, found a UID"},
        {document("\xC0").bytes(), "mappings: expected an array, found a set"},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(errorOf(cases[i].bytes), cases[i].error) << "case " << i;
    }
}

TEST(CfgHostile, textsKeysAndLoops) {
    const auto withVersion = [](std::string object) {
        RawPlist raw = document("\xA0");
        raw.objects[2] = std::move(object);
        return RawPlist(raw.objects).bytes();
    };
    const std::string notUtf16 = "version: the text is not valid UTF-16";
    const struct {
        Bytes bytes;
        std::string error;
    } cases[] = {
        {withVersion("\x52\x31\x80"), "version: the text has bytes that are not ASCII"},
        {withVersion("\x61\xD8\x3C"), notUtf16},
        {withVersion("\x61\xDF\xB9"), notUtf16},
        {withVersion("\x62\xD8\x3C\xD8\x3C"), notUtf16},
        {withVersion("\x62\xDF\xB9\xD8\x3C"), notUtf16},
        // A container among its own elements, and a dictionary that is its own field.
        {document("\xA1\x04").bytes(), "mappings[0]: expected a dictionary, found an array"},
        {document("\xA1\x00"s).bytes(), "mappings[0].id: the key is missing"},
        {document("\xA1\x07", {"\xD1\x08\x07", asciiObject("from")}).bytes(),
         "mappings[0].from.keyCode: the key is missing"},
        {RawPlist({"\xD1\x01\x01", "\x10\x01"}).bytes(),
         "expected a string as the key, found an integer"},
        {RawPlist({"\xD2\x01\x01\x02\x02", asciiObject("version"), asciiObject("1.0")}).bytes(),
         "version: the key appears twice"},
        // Keys may be written as UTF-16; the values of unknown ones are not looked at.
        {RawPlist({"\xD4\x01\x03\x04\x06\x02\x05\x05\xFF", asciiObject("version"), asciiObject("2"),
                   "\x68\0m\0a\0p\0p\0i\0n\0g\0s"s, asciiObject("shortcuts"), "\xA0",
                   asciiObject("new")})
             .bytes(),
         "accepted"},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(errorOf(cases[i].bytes), cases[i].error) << "case " << i;
    }
}

TEST(CfgHostile, integerWidths) {
    const auto vendor = [](std::string integer) {
        return decodeCfg(vendorDocument(std::move(integer)).bytes());
    };
    const std::string zeros(8, '\0');
    const std::string ones(8, '\xFF');
    const struct {
        std::string bytes;
        std::int64_t value;
    } accepted[] = {
        {"\x10\xFF", 255},
        {"\x11\xFF\xFF", 65535},
        {"\x12\xFF\xFF\xFF\xFF", 4294967295},
        {"\x13" + ones, -1},
        {"\x14" + ones + ones, -1},
        {"\x14" + zeros + "\x7F" + ones.substr(1), INT64_MAX},
        {"\x14" + ones + "\x80" + zeros.substr(1), INT64_MIN},
    };
    for (const auto& c : accepted) {
        const Result<Cfg> cfg = vendor(c.bytes);
        ASSERT_TRUE(cfg) << cfg.error().description();
        EXPECT_EQ(cfg->excludedKeyboards.at(0).vendorID, c.value);
    }
    for (const std::string& bytes : {"\x14" + zeros + ones, "\x14" + ones + zeros,
                                     "\x14" + zeros.substr(1) + "\x01" + zeros}) {
        EXPECT_EQ(vendor(bytes).error().description(),
                  "excludedKeyboards[0].vendorID: the integer does not fit in 64 bits");
    }
}

/// Documents of some kilobytes that ask for gigabytes: one object named over and over.
TEST(CfgHostile, sharedReferencesEndAtTheBudget) {
    const std::string over = "the configuration takes more than 64 MiB";
    const std::size_t most = 65535;
    const std::string names(most, '\x0B');
    const std::vector<std::string> mapping = {
        "\xD4\x08\x09\x0A\x0C\x0D\x0E\x0F\x0F", // 7; 11 is what the long list holds
        asciiObject("id"),
        asciiObject("enabled"),
        asciiObject("from"),
        asciiObject(""),
        asciiObject("to"),
        test::wideContainer('\x50', std::string(most, 'x'), most),
        "\x09",
        "\xD2\x10\x11\x12\x13",
        asciiObject("keyCode"),
        asciiObject("modifiers"),
        "\x10\x04",
        test::wideContainer('\xA0', names, most)};
    const auto list = [](std::size_t count) {
        return test::wideContainer('\xA0', std::string(count, '\x07'), count);
    };
    // Long texts: 65535 bytes each time the mapping is named.
    std::vector<std::string> longTexts = mapping;
    longTexts[12] = "\xA0";
    EXPECT_EQ(errorOf(document(list(1000), longTexts).bytes()), "accepted");
    EXPECT_EQ(errorOf(document(list(1100), longTexts).bytes()), "mappings[1019].id: " + over);
    // Long lists: two million bytes each time, twice a mapping.
    EXPECT_EQ(errorOf(document(list(1000), mapping).bytes()), "mappings[15].to.modifiers: " + over);
    // Unknown keys cost time only, but that too is counted.
    std::vector<std::string> manyKeys = longTexts;
    const std::string unknown(most - 2, '\x0B');
    manyKeys[8] = test::wideContainer('\xD0', "\x10\x11" + unknown + "\x12\x13" + unknown, most);
    EXPECT_EQ(errorOf(document(list(50), manyKeys).bytes()), "accepted");
    EXPECT_EQ(errorOf(document(list(100), manyKeys).bytes()), "mappings[60].from: " + over);
}

} // namespace
} // namespace tamsel
