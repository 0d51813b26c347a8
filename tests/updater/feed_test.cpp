#include "platform/linux/updater/update_choice.h"
#include "platform/linux/updater/version_order.h"

#include <gmock/gmock.h>

namespace tamsel {

TEST(VersionOrder, ComparesNumbersTextsAndLengths) {
    // Each is older than the next; those of one line are the same.
    const QList<QStringList> ascending{
        {"", ".", "-"},
        {"1.0b1", "1.0-b-1", "01.0b01"},
        {"1.0b2"},
        {"1.0b10"},
        {"1.0rc1"},
        {"1.0", "1 0", "1.00"},
        {"1.0.1"},
        {"1.2"},
        {"1.10", "1.010"},
        {"99999999999999999999999999"},
        {"100000000000000000000000000"},
    };
    for (int i = 1; i < ascending.size(); ++i) {
        for (int j = 1; j < ascending.size(); ++j) {
            for (const QString& left : ascending[i]) {
                for (const QString& right : ascending[j]) {
                    EXPECT_EQ(compareVersions(left, right) < 0, i < j)
                        << left.toStdString() << " " << right.toStdString();
                    EXPECT_EQ(compareVersions(left, right) == 0, i == j)
                        << left.toStdString() << " " << right.toStdString();
                }
            }
        }
    }
    EXPECT_TRUE(compareVersions(ascending[0][1], ascending[0][2]) == 0);
}

QByteArray feed(const QByteArray& items, const QByteArray& before = "") {
    return "<?xml version='1.0' encoding='utf-8'?>" + before + "<rss version='2.0' xmlns:s='" +
           appcastNamespace.toUtf8() + "'><channel><title>T</title>" + items + "</channel></rss>";
}

TEST(Appcast, ReadsElementsAndAttributes) {
    const auto entries = parseAppcast(
        feed("<item><title> New </title><s:version>200</s:version>"
             "<s:shortVersionString>1.5</s:shortVersionString>"
             "<s:minimumSystemVersion>5.10</s:minimumSystemVersion><s:channel>beta</s:channel>"
             "<other><s:version>7</s:version></other><version>8</version>"
             "<enclosure url='https://a/b.tar.xz' length='12' type='x' s:edSignature='c2ln' "
             "s:os='linux'/>"
             "</item>"
             "<item><enclosure url='https://a/c' length='many' s:version='3'/></item><item/>"));
    ASSERT_TRUE(entries);
    AppcastEntry whole;
    whole.title = "New";
    whole.version = "200";
    whole.shortVersion = "1.5";
    whole.minimumSystem = "5.10";
    whole.channel = "beta";
    whole.os = "linux";
    whole.url = QUrl("https://a/b.tar.xz");
    whole.length = 12;
    whole.edSignature = "c2ln";
    AppcastEntry attributes;
    attributes.version = attributes.shortVersion = "3";
    attributes.url = QUrl("https://a/c");
    EXPECT_EQ(*entries, (QList<AppcastEntry>{whole, attributes, {}}));
}

TEST(Appcast, RefusesWhatIsNoFeed) {
    const QByteArray bomb = "<!DOCTYPE rss [<!ENTITY a 'ha'><!ENTITY b '&a;&a;&a;&a;'>]>";
    const QByteArray good = feed("<item/>");
    for (const QByteArray& xml :
         {QByteArray(), QByteArray("not a feed"), QByteArray("{}"), QByteArray("<html/>"),
          feed("<item><title>&b;</title></item>", bomb),
          feed("", "<!DOCTYPE rss SYSTEM 'file:///x'>"),
          feed("<item><title>&unknown;</title></item>"), good + "<more/>",
          feed(QByteArray("<item/>").repeated(1001)),
          feed("<item><s:version><b/></s:version></item>"), QByteArray(100'000, '<'),
          feed(QByteArray("<a>").repeated(100'000))})
        EXPECT_FALSE(parseAppcast(xml)) << xml.left(200).toStdString();
    for (qsizetype length = 0; length < good.size(); ++length)
        EXPECT_FALSE(parseAppcast(good.left(length))) << length;
    EXPECT_TRUE(parseAppcast(good));
}

TEST(UpdateChoice, TakesTheNewestThatRunsHere) {
    const UpdateWish wish{"142", "6.1.0-28-amd64", "x86_64", {}};
    const auto chosen = [](const QList<AppcastEntry>& entries, const UpdateWish& by) {
        const auto entry = chooseUpdate(entries, by);
        return entry ? entry->version : QString("none");
    };
    const auto entry = [](const char* version, QString AppcastEntry::*field = nullptr,
                          const char* value = "") {
        AppcastEntry made;
        made.version = version;
        if (field)
            made.*field = value;
        return made;
    };
    using E = AppcastEntry;
    EXPECT_EQ(chosen({}, wish), "none");
    EXPECT_EQ(chosen({entry("142"), entry("141.9"), entry(""), entry("142b9")}, wish), "none");
    EXPECT_EQ(chosen({entry("143"), entry("150"), entry("149")}, wish), "150");
    const QList<AppcastEntry> unfit{
        entry("200", &E::minimumSystem, "6.2"), entry("201", &E::maximumSystem, "5.19"),
        entry("202", &E::hardware, "arm64"),    entry("203", &E::channel, "beta"),
        entry("204", &E::os, "macos"),
    };
    EXPECT_EQ(chosen(unfit, wish), "none");
    const QList<AppcastEntry> fit{
        entry("200", &E::minimumSystem, "6.1"), entry("201", &E::maximumSystem, "6.1.5"),
        entry("202", &E::hardware, "arm64, x86_64"), entry("203", &E::os, "linux")};
    for (const AppcastEntry& one : fit)
        EXPECT_EQ(chosen(unfit + QList{one}, wish), one.version);
    EXPECT_EQ(chosen({entry("150"), entry("149")}, {"142", "6.1", "x86_64", "150"}), "149");
}

} // namespace tamsel
