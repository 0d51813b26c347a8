#include "base/process.h"
#include "platform/linux/store/sqlite_user_defaults.h"
#include "support/files.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <unistd.h>

namespace tamsel {

struct SqliteUserDefaultsTest : testing::Test {
    QTemporaryDir folder;
    QString file = folder.filePath("tamsel/defaults.sqlite");

    std::unique_ptr<SqliteUserDefaults> open() {
        auto opened = SqliteUserDefaults::open(file);
        EXPECT_TRUE(opened) << opened.error().description();
        return opened ? std::move(*opened) : nullptr;
    }
};

TEST_F(SqliteUserDefaultsTest, KeepsBytesAndBooleansAcrossOpenings) {
    const QByteArray bytes("\0\xff binary \0", 11);
    {
        const auto store = open();
        EXPECT_EQ(store->dataForKey("k"), std::nullopt);
        ASSERT_TRUE(store->setData("old", "k"));
        ASSERT_TRUE(store->setData(bytes, "k"));
        ASSERT_TRUE(store->setData("", "empty"));
        EXPECT_EQ(store->contains("f"), false);
        ASSERT_TRUE(store->setBool(true, "t"));
        ASSERT_TRUE(store->setBool(false, "f"));
    }
    const auto store = open();
    EXPECT_EQ(store->dataForKey("k"), bytes);
    EXPECT_EQ(store->dataForKey("empty"), QByteArray(""));
    EXPECT_EQ(store->contains("f"), true) << "a false value is one, too";
    EXPECT_EQ(store->dataForKey("t"), QByteArray("1"));
    EXPECT_EQ(store->dataForKey("f"), QByteArray("0"));
    EXPECT_TRUE(store->setAside().isEmpty());
}

TEST_F(SqliteUserDefaultsTest, TwoOpenStoresSeeEachOther) {
    const auto first = open();
    const auto second = open();
    for (int i = 0; i < 50; ++i) {
        const QByteArray value = QByteArray::number(i);
        ASSERT_TRUE((i % 2 ? first : second)->setData(value, "k"));
        EXPECT_EQ((i % 2 ? second : first)->dataForKey("k"), value);
    }
}

TEST_F(SqliteUserDefaultsTest, ADamagedFileIsSetAsideNotDeleted) {
    for (int n = 1; n <= 2; ++n) {
        const QByteArray damaged = "this is no database, " + QByteArray::number(n);
        writeFile(file, damaged);
        const auto store = open();
        ASSERT_TRUE(store);
        EXPECT_EQ(store->setAside(), QString("%1.damaged-%2").arg(file).arg(n));
        QFile aside(store->setAside());
        ASSERT_TRUE(aside.open(QFile::ReadOnly));
        EXPECT_EQ(aside.readAll(), damaged);
        EXPECT_TRUE(store->setData("x", "k"));
    }
}

TEST_F(SqliteUserDefaultsTest, AFolderThatCantBeMadeIsAClearError) {
    writeFile(folder.filePath("tamsel"), {});
    const auto opened = SqliteUserDefaults::open(file);
    ASSERT_FALSE(opened);
    EXPECT_NE(opened.error().description().find("tamsel"), std::string::npos);
}

// A child that saves without pause is killed at 200 moments; what is stored is always one of the
// values it has written, whole.
TEST_F(SqliteUserDefaultsTest, AKillDuringSavesLeavesACompleteValue) {
    int distinct = 0;
    QByteArray last;
    for (int round = 0; round < 200; ++round) {
        auto pipe = Pipe::make();
        ASSERT_TRUE(pipe);
        const auto pid =
            spawn({.program = TAMSEL_TEST_PROGRAMS "/save_loop",
                   .arguments = {QFile::encodeName(file).toStdString(), std::to_string(round)},
                   .descriptors = {{STDOUT_FILENO, pipe->writing.get()}}});
        ASSERT_TRUE(pid);
        char ready = 0; // comes after the child's first save
        ASSERT_EQ(::read(pipe->reading.get(), &ready, 1), 1);
        ::usleep(static_cast<useconds_t>(round * 97 % 10'000));
        ::kill(*pid, SIGKILL);
        ASSERT_EQ(reap(*pid), 128 + SIGKILL) << "the child ended by itself";

        const auto store = open();
        ASSERT_TRUE(store);
        ASSERT_TRUE(store->setAside().isEmpty());
        const auto value = store->dataForKey("k");
        ASSERT_TRUE(value);
        ASSERT_TRUE(*value);
        // Values are one byte repeated, as long as the byte says.
        const QByteArray& bytes = **value;
        ASSERT_FALSE(bytes.isEmpty());
        ASSERT_EQ(bytes, QByteArray(20'000 + static_cast<uchar>(bytes[0]), bytes[0]));
        distinct += bytes != last;
        last = bytes;
    }
    EXPECT_GT(distinct, 190);
}

} // namespace tamsel
