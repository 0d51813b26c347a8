#include "platform/linux/deployment.h"

#include "support/files.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tamsel {

TEST(FolderBundleTest, ReadsTextsOfTheInformationDictionaryOnly) {
    const QTemporaryDir folder;
    writeFile(folder.filePath("Info.plist"),
              "<?xml version=\"1.0\"?><!DOCTYPE plist><plist version=\"1.0\"><dict>"
              "<key>CFBundleVersion</key><string>42</string>"
              "<key>Nested</key><dict><key>Inner</key><string>x</string></dict>"
              "<key>Number</key><integer>7</integer>"
              "<key>QLFeedURL</key><string>https://a.b/?x=1&amp;y=2</string></dict></plist>");
    const FolderBundle bundle(folder.path(), folder.path());
    EXPECT_EQ(bundle.infoString("CFBundleVersion"), "42");
    EXPECT_EQ(bundle.infoString("QLFeedURL"), "https://a.b/?x=1&y=2");
    EXPECT_EQ(bundle.infoString("Number"), std::nullopt);
    EXPECT_EQ(bundle.infoString("Inner"), std::nullopt);

    for (const char* broken : {"", "<plist>", "<plist><array/></plist>", "bplist00",
                               "<!DOCTYPE p [<!ENTITY a 'x'><!ENTITY b '&a;&a;'>]><plist><dict>"
                               "<key>CFBundleVersion</key><string>&c;</string></dict></plist>"}) {
        writeFile(folder.filePath("Info.plist"), broken);
        EXPECT_FALSE(FolderBundle(folder.path(), {}).infoString("CFBundleVersion").value_or("") ==
                     "42");
    }
    EXPECT_EQ(FolderBundle("/nowhere", {}).infoString("CFBundleVersion"), std::nullopt);
}

TEST(FolderBundleTest, FindsCompanionsBesideTheProgramOrInLibexec) {
    const QTemporaryDir prefix;
    QDir(prefix.path()).mkpath("bin");
    const FolderBundle bundle(prefix.path(), prefix.filePath("bin"));
    EXPECT_EQ(bundle.pathForResource("tamsel-daemon", "app"), std::nullopt);
    const QString installed = prefix.filePath("libexec/tamsel/tamsel-daemon");
    writeFile(installed, "#!");
    EXPECT_EQ(bundle.pathForResource("tamsel-daemon", "app"), std::nullopt) << "not executable";
    QFile::setPermissions(installed, QFile::ReadOwner | QFile::ExeOwner);
    EXPECT_EQ(bundle.pathForResource("tamsel-daemon", "app"), installed);
    qputenv("TAMSEL_DAEMON_ADDRESS", "unix:path=/elsewhere");
    const auto elsewhere = Deployment::here("/nowhere").bundle();
    EXPECT_TRUE(elsewhere.pathForResource("tamsel-daemon", "app"));
    EXPECT_FALSE(elsewhere.pathForResource("tamsel-agent", "app"));
    qunsetenv("TAMSEL_DAEMON_ADDRESS");
    EXPECT_FALSE(Deployment::here("/nowhere").bundle().pathForResource("tamsel-daemon", "app"));
    writeFile(prefix.filePath("changelog.txt"), "## 1\n");
    EXPECT_EQ(bundle.pathForResource("changelog", "txt"), prefix.filePath("changelog.txt"));
}

} // namespace tamsel
