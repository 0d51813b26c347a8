#include "archive_files.h"

#include "platform/linux/updater/archive_signature.h"
#include "platform/linux/updater/archive_unpacker.h"
#include "support/files.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace tamsel {

struct ArchiveTest : testing::Test {
    QTemporaryDir folder;
    QString archive = folder.filePath("archive");
    QString inside = folder.filePath("a/b/inside");

    ArchiveTest() { QDir().mkpath(inside); }

    tl::expected<void, UnpackError> unpack(const UnpackLimits& limits = {}) const {
        return unpackArchive(archive, inside, limits, false);
    }
    /// Everything below the test's folder but what was unpacked.
    QStringList outside() const {
        return QDir(folder.path())
                   .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot) +
               QDir(folder.filePath("a")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot) +
               QDir(folder.filePath("a/b")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }
    QByteArray read(const QString& path) const {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }
    void write(const QByteArray& bytes) const { writeFile(archive, bytes); }
};

TEST_F(ArchiveTest, UnpacksFilesFoldersAndLinks) {
    writeArchive(archive, {{"t/", {}, AE_IFDIR, {}, 0777},
                           {"./t/bin/tamsel", "program", AE_IFREG, {}, 06777},
                           {"t/lib/one", "1", AE_IFREG, {}, 0466},
                           {"t/shut", {}, AE_IFDIR, {}, 0},
                           {"t/lib/two", {}, AE_IFLNK, "one"},
                           {"t/lib/three", {}, AE_IFLNK, "../bin/tamsel"}});
    ASSERT_TRUE(unpack());
    EXPECT_EQ(read(inside + "/t/bin/tamsel"), "program");
    EXPECT_EQ(read(inside + "/t/lib/two"), "1");
    EXPECT_EQ(read(inside + "/t/lib/three"), "program");
    const std::pair<const char*, unsigned> modes[] = {
        {"/t", 0755}, {"/t/shut", 0755}, {"/t/bin/tamsel", 0755}, {"/t/lib/one", 0644}};
    for (const auto& [name, mode] : modes) {
        struct stat info {};
        ASSERT_EQ(::stat(qPrintable(inside + name), &info), 0);
        EXPECT_EQ(info.st_mode & 07777, mode) << name;
    }
}

TEST_F(ArchiveTest, RefusesWhatLeadsOutside) {
    writeArchive(archive, {});
    const QStringList before = outside();
    const QByteArray above = "../evil";
    const QByteArray absolute = QFile::encodeName(folder.filePath("evil"));
    const QList<QList<ArchiveFile>> hostile{
        {{above, "x"}},
        {{"t/../../evil", "x"}},
        {{"t/..", {}, AE_IFDIR}},
        {{absolute, "x"}},
        {{"t/out", {}, AE_IFLNK, "../../evil"}},
        {{"t/out", {}, AE_IFLNK, "../.."}},
        {{"t/out", {}, AE_IFLNK, absolute}},
        {{"t/out", {}, AE_IFLNK, ""}},
        {{"t/out", {}, AE_IFLNK, "../t2"}},
        {{"t/a/out", {}, AE_IFLNK, "../../t"}},
        {{"out", {}, AE_IFLNK, "t"}},
        {{"t/line\nbreak", "x"}},
        {{"t/" + QByteArray("d/").repeated(32), {}, AE_IFDIR}},
        {{"t/" + QByteArray("long/").repeated(10) + QByteArray(200, 'x') + '/' +
              QByteArray(200, 'y') + '/' + QByteArray(200, 'z') + '/' + QByteArray(200, 'a') + '/' +
              QByteArray(200, 'b'),
          "x"}},
        {{"t/a/b/c", {}, AE_IFLNK, "../../../z"}, {"t/x", {}, AE_IFLNK, "a/b/c/../../.."}},
        {{"t/a", {}, AE_IFLNK, "b"}, {"t/a/evil", "x"}},
        {{"t/file", "x"}, {"t/hard", {}, AE_IFREG, "t/file"}},
        {{"t/hard", {}, AE_IFREG, "/etc/passwd"}},
        {{"t/fifo", {}, AE_IFIFO}},
        {{"t/device", {}, AE_IFCHR}},
    };
    for (const auto& files : hostile) {
        writeArchive(archive, files);
        const auto done = unpack();
        ASSERT_FALSE(done) << files.last().path.toStdString();
        EXPECT_THAT(done.error().fault, testing::AnyOf(UnpackFault::unsafe, UnpackFault::failed))
            << files.last().path.toStdString() << done.error().detail.toStdString();
        QDir(inside).removeRecursively();
        QDir().mkpath(inside);
        EXPECT_EQ(outside(), before) << files.last().path.toStdString();
    }
}

TEST_F(ArchiveTest, StopsAtItsLimits) {
    writeArchive(archive, {{.path = "t/hole", .holes = 300'000'000},
                           {.path = "t/hole too", .holes = 300'000'000}});
    auto done = unpack();
    ASSERT_FALSE(done);
    EXPECT_EQ(done.error().fault, UnpackFault::tooLarge) << "holes count as what they read as";
    QList<ArchiveFile> many;
    for (int i = 0; i < 12; ++i)
        many.append({"t/" + QByteArray::number(i), "12345"});
    writeArchive(archive, many);
    done = unpack({.bytes = 1000, .entries = 11});
    ASSERT_FALSE(done);
    EXPECT_EQ(done.error().fault, UnpackFault::tooLarge);
    done = unpackArchive(archive, inside, {}, true);
    ASSERT_FALSE(done);
    EXPECT_EQ(done.error().fault, UnpackFault::givenUp);
}

TEST_F(ArchiveTest, RefusesWhatIsNoArchiveAtAnyLength) {
    writeArchive(archive, {{"t/one", QByteArray(3000, 'x')}, {"t/two", "2"}});
    const QByteArray whole = read(archive);
    for (qsizetype length = 0; length < whole.size(); length += 7) {
        write(whole.left(length));
        EXPECT_FALSE(unpack()) << length;
        QDir(inside).removeRecursively();
        QDir().mkpath(inside);
    }
    write("PK\x03\x04 a zip is none that is read here");
    EXPECT_FALSE(unpack());
}

TEST_F(ArchiveTest, ASignatureFitsEveryByteOfItsFileAndOneKey) {
    write(QByteArray(1000, 'a'));
    const auto keys = archive_signature::makeKeys();
    const auto signature = archive_signature::sign(archive, keys.secretKey);
    ASSERT_TRUE(signature);
    EXPECT_EQ(archive_signature::publicKeyOf(keys.secretKey), keys.publicKey);
    EXPECT_TRUE(archive_signature::verify(archive, *signature, {keys.publicKey}));
    EXPECT_FALSE(
        archive_signature::verify(archive, *signature, {archive_signature::makeKeys().publicKey}));
    for (const QString& wrong : {QString(), QString("c2ln"), *signature + "=", "!" + *signature})
        EXPECT_FALSE(archive_signature::verify(archive, wrong, {keys.publicKey}));
    for (qsizetype at = 0; at < 64; ++at) {
        QByteArray flipped = QByteArray::fromBase64(signature->toLatin1());
        flipped[at] = static_cast<char>(flipped[at] ^ 1);
        EXPECT_FALSE(archive_signature::verify(archive, flipped.toBase64(), {keys.publicKey}))
            << at;
    }
    for (qsizetype at = 0; at < 1000; at += 37) {
        QByteArray flipped(1000, 'a');
        flipped[at] = 'b';
        write(flipped);
        EXPECT_FALSE(archive_signature::verify(archive, *signature, {keys.publicKey})) << at;
    }
    write({});
    EXPECT_FALSE(archive_signature::verify(archive, *signature, {keys.publicKey}));
    // The first test vector of RFC 8032 with a message of one byte.
    write(QByteArray::fromHex("72"));
    EXPECT_TRUE(archive_signature::verify(
        archive,
        QByteArray::fromHex("92a009a9f0d4cab8720e820b5f642540a2b27b5416503f8fb3762223ebdb69da"
                            "085ac1e43e15996e458f3613d0f11d8c387b2eaeb4302aeeb00d291612bb0c00")
            .toBase64(),
        {QByteArray::fromHex("3d4017c3e843895a92b70aa74d1b7ebc9c982ccf2ec4968cc0cd55f12af4660c")
             .toBase64()}));
}

} // namespace tamsel
