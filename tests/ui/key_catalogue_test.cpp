#include "ui/key_catalogue.h"

#include "keys/key_codes.h"

#include <gmock/gmock.h>

namespace tamsel {
namespace {

using testing::ElementsAre;

struct KeyCatalogueTest : testing::Test {
    std::unique_ptr<KeyCatalogue> catalogue{KeyCatalogue::create(nullptr, nullptr)};

    QStringList column(KeyCatalogue::Role role) const {
        QStringList out;
        for (int row = 0; row < catalogue->rowCount(); ++row)
            out << catalogue->data(catalogue->index(row), role).toString();
        return out;
    }
};

TEST_F(KeyCatalogueTest, ListsEveryKeyButNoneUnderItsSection) {
    EXPECT_EQ(catalogue->count(), 182);
    EXPECT_EQ(catalogue->indexOf(KeyCodes::noKey), -1);
    QStringList sections = column(KeyCatalogue::SectionRole);
    // The view draws one title a run: a section in two runs would have two.
    sections.erase(std::unique(sections.begin(), sections.end()), sections.end());
    EXPECT_THAT(sections,
                ElementsAre("Letters", "Numbers", "Function Keys", "Modifiers",
                            "Controls & Symbols", "Arrow & Navigation", "Keypad", "PC Keys",
                            "Media Keys", "International", "Mouse Buttons", "Other"));
    const QStringList sectionOf = column(KeyCatalogue::SectionRole);
    EXPECT_EQ(sectionOf.count("Mouse Buttons"), 32);
    EXPECT_EQ(column(KeyCatalogue::NameRole).value(sectionOf.indexOf("Other")), "execute");
    const int row = catalogue->indexOf(KeyCodes::capsLock);
    EXPECT_EQ(catalogue->codeAt(row), KeyCodes::capsLock);
    EXPECT_EQ(column(KeyCatalogue::NameRole).value(row), "caps_lock");
    EXPECT_EQ(column(KeyCatalogue::SectionRole).value(row), "Modifiers");
}

TEST_F(KeyCatalogueTest, FiltersByName) {
    const struct {
        const char* filter;
        QStringList names;
    } cases[] = {
        {"caps", {"caps_lock"}},    {"PAGE", {"page_up", "page_down"}},
        {" page up ", {"page_up"}}, {"left_c", {"left_control", "left_command"}},
        {"no such key", {}},
    };
    for (const auto& c : cases) {
        catalogue->setFilter(c.filter);
        EXPECT_EQ(column(KeyCatalogue::NameRole), c.names) << c.filter;
        EXPECT_EQ(catalogue->count(), c.names.size()) << c.filter;
    }
    catalogue->setFilter("caps");
    EXPECT_EQ(catalogue->indexOf(KeyCodes::capsLock), 0);
    EXPECT_EQ(catalogue->indexOf(KeyCodes::fn), -1);
    EXPECT_EQ(catalogue->codeAt(1), KeyCodes::noKey);
    catalogue->setFilter("");
    EXPECT_EQ(catalogue->count(), 182);
}

} // namespace
} // namespace tamsel
