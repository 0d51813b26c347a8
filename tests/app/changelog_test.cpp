#include "app/changelog.h"

#include "platform/fake/fake_bundle.h"
#include "support/files.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tamsel {

TEST(ChangelogTest, TheNewestEntryInTheUsersLanguage) {
    const std::pair<const char*, const char*> cases[] = {
        {"", ""},
        {"no heading\n- a", ""},
        {"intro\n## 2\n\n- a\n \t \n  - b  \n## 1\n- c", "- a\n  - b  "},
        {"## 1\n##2\n- x", "##2\n- x"},
    };
    for (const auto& [text, entry] : cases)
        EXPECT_EQ(newestChangelogEntry(text), entry);

    FakeBundle bundle;
    const QTemporaryDir folder;
    const auto put = [&](const QString& name, const QByteArray& text) {
        writeFile(folder.filePath(name), text);
        bundle.resources["changelog/" + name] = folder.filePath(name);
    };
    EXPECT_EQ(loadLatestChangelog(bundle), "");
    put("changelog.txt", "## 1\nenglish");
    put("changelog_ja.txt", "## 1\njapanese");
    put("changelog_fr.txt", "## 1\n\xff");
    const std::pair<QStringList, const char*> languages[] = {{{}, "english"},
                                                             {{"en", "ja"}, "english"},
                                                             {{"ja"}, "japanese"},
                                                             {{"de"}, "english"},
                                                             {{"fr"}, ""}};
    for (const auto& [localizations, text] : languages) {
        bundle.localizations = localizations;
        EXPECT_EQ(loadLatestChangelog(bundle), text);
    }
}

} // namespace tamsel
