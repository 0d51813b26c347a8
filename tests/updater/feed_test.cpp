#include "platform/linux/updater/appcast_writer.h"
#include "platform/linux/updater/archive_signature.h"
#include "platform/linux/updater/signed_feed.h"
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
    for (int i = 1; i < ascending.size(); ++i)
        for (int j = 1; j < ascending.size(); ++j)
            for (const QString& left : ascending[i])
                for (const QString& right : ascending[j])
                    EXPECT_TRUE(compareVersions(left, right) == (i <=> j))
                        << left.toStdString() << " " << right.toStdString();
    EXPECT_TRUE(compareVersions(ascending[0][1], ascending[0][2]) == 0);
}

QByteArray feed(const QByteArray& items, const QByteArray& before = "") {
    return "<?xml version='1.0' encoding='utf-8'?>" + before + "<rss version='2.0' xmlns:s='" +
           appcastNamespace.toUtf8() + "' xmlns:o='" + ownNamespace.toUtf8() +
           "'><channel><title>T</title>" + items + "</channel></rss>";
}

TEST(Appcast, ReadsElementsAndAttributes) {
    const auto appcast = parseAppcast(
        feed("<o:sequence>12</o:sequence><o:expires>2026-11-24T10:00:00Z</o:expires><item><title> "
             "New </title><s:version>200</s:version>"
             "<s:shortVersionString>1.5</s:shortVersionString>"
             "<s:minimumSystemVersion>5.10</s:minimumSystemVersion><s:channel>beta</s:channel>"
             "<other><s:version>7</s:version></other><version>8</version>"
             "<enclosure url='https://a/b.tar.xz' length='12' type='x' s:edSignature='c2ln' "
             "s:os='linux'/>"
             "</item>"
             "<item><enclosure url='https://a/c' length='many' s:version='3'/></item><item/>"
             "<item><title>" +
             QByteArray(5'000, 'x') +
             "</title><s:version>\u202e1</s:version><s:shortVersionString>1.6\n\u202efinal"
             "</s:shortVersionString></item>"));
    ASSERT_TRUE(appcast);
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
    AppcastEntry cleaned;
    cleaned.title = QString(200, 'x');
    cleaned.shortVersion = "1.6 final";
    EXPECT_EQ(appcast->entries, (QList<AppcastEntry>{whole, attributes, {}, cleaned}));
    EXPECT_EQ(appcast->sequence, 12U);
    EXPECT_EQ(appcast->expires, QDateTime(QDate(2026, 11, 24), QTime(10, 0), Qt::UTC));
    Appcast written = *appcast;
    written.date = written.expires;
    EXPECT_EQ(parseAppcast(writeAppcast(written)), written);
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
          feed(QByteArray("<a>").repeated(100'000)), feed(QByteArray("<a>").repeated(15)),
          feed("<a " + QByteArray(" b='>'").repeated(33) + "/>"), feed("<a b='/>")})
        EXPECT_FALSE(parseAppcast(xml)) << xml.left(200).toStdString();
    for (qsizetype length = 0; length < good.size(); ++length)
        EXPECT_FALSE(parseAppcast(good.left(length))) << length;
    EXPECT_TRUE(parseAppcast(good));
    EXPECT_TRUE(parseAppcast(feed(QByteArray("<a>").repeated(14) + QByteArray("</a>").repeated(14) +
                                  "<a " + "b='>' c=\"'\"/>" + "<!--<a <a--><![CDATA[<a><a>]]>")));
}

struct SignedFeedTest : testing::Test {
    using Pair = archive_signature::KeyPair;
    Pair one = archive_signature::makeKeys();
    Pair two = archive_signature::makeKeys();
    Pair offline = archive_signature::makeKeys();
    BundleKeys bundle{{0, {one.publicKey}, {}}, offline.publicKey};
    QDateTime now{QDate(2026, 11, 24), QTime(10, 0), Qt::UTC};
    QString kept;

    /// What a copy makes of a feed, and remembers.
    std::string opened(const QByteArray& bytes) {
        const auto feed = openFeed(bytes, FeedMemory::of(bundle, kept), bundle.offlineKey, now);
        static const char* const faults[] = {"forged", "older", "expired", "malformed"};
        if (!feed)
            return faults[int(feed.error().fault)];
        kept = feed->memory.text();
        return "taken";
    }
    QByteArray sealed(quint64 sequence, const Pair& key, const KeyList& list = {}) const {
        return *sealFeed({{}, sequence, now, now.addDays(60)}, list, key.secretKey);
    }
    KeyList list(quint64 number, const QStringList& keys, const Pair& by) const {
        return *KeyList::make(number, keys, by.secretKey);
    }
};

TEST_F(SignedFeedTest, NothingInItCanBeChanged) {
    const QByteArray good = sealed(5, one);
    for (qsizetype at = 0; at < good.size(); ++at) {
        QByteArray changed = good;
        changed[at] = static_cast<char>(changed[at] ^ 1);
        EXPECT_EQ(opened(changed), "forged") << at;
    }
    for (const QByteArray& other : {QByteArray(), QByteArray("\n"), good + "\n", good + " ",
                                    good.chopped(1), "\n" + good, good + good})
        EXPECT_EQ(opened(other), "forged");
    EXPECT_EQ(opened(good), "taken");
}

TEST_F(SignedFeedTest, NoOldOneIsTakenForTheNewest) {
    EXPECT_EQ(opened(sealed(5, one)), "taken");
    EXPECT_EQ(opened(sealed(5, one)), "taken");
    EXPECT_EQ(opened(sealed(4, one)), "older");
    EXPECT_EQ(opened(sealed(0, one)), "malformed");
    const QByteArray last = sealed(6, one);
    now = now.addDays(60);
    EXPECT_EQ(opened(last), "taken");
    now = now.addSecs(1);
    EXPECT_EQ(opened(last), "expired");
}

TEST_F(SignedFeedTest, KeysComeAndGoInTheNameOfTheOfflineKey) {
    const KeyList both = list(1, {one.publicKey, two.publicKey}, offline);
    const KeyList second = list(2, {two.publicKey}, offline);
    EXPECT_EQ(opened(sealed(1, two)), "forged");
    EXPECT_EQ(opened(sealed(1, two, list(1, {two.publicKey}, one))), "forged")
        << "a key that signs feeds can't let in another one";
    // A thief counts up to the end, so that nothing newer seems to come.
    EXPECT_EQ(opened(sealed(~quint64{0}, one)), "taken");
    EXPECT_EQ(opened(sealed(1, two, both)), "taken");
    EXPECT_EQ(opened(sealed(2, one)), "taken") << "the list is remembered";
    EXPECT_EQ(opened(sealed(1, two, second)), "taken");
    EXPECT_EQ(opened(sealed(9, one, both)), "forged") << "revoked, whatever list comes along";
    EXPECT_EQ(opened(sealed(2, two)), "taken");
    // A copy that brings the list has no need of what another one has seen.
    bundle.list = second;
    EXPECT_EQ(opened(sealed(1, two)), "older");
    kept = "nonsense";
    EXPECT_EQ(opened(sealed(1, one)), "forged");
    EXPECT_EQ(opened(sealed(1, two)), "taken");
    bundle = {{0, {one.publicKey}, {}}, {}};
    kept.clear();
    EXPECT_EQ(opened(sealed(1, two, both)), "forged") << "without an offline key no list counts";
    for (const QString& text : {QString(), QString("1 x y"), both.text() + " ", "0" + both.text(),
                                both.text().replace("1 ", "2 ")})
        EXPECT_FALSE(KeyList::read(text, offline.publicKey)) << text.toStdString();
    EXPECT_EQ(KeyList::read(both.text(), offline.publicKey), both);
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
        made.url = QUrl("https://a.b/c");
        made.length = 1;
        made.sha256 = QByteArray(32, 'x');
        made.edSignature = QByteArray(64, 'x').toBase64();
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
