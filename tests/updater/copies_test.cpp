#include "copies/copy_start.h"
#include "copies/exchange.h"
#include "copies/trial.h"
#include "platform/background_queue.h"
#include "platform/linux/updater/program_start.h"
#include "support/files.h"

#include <QTemporaryDir>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tamsel {

/// A copy "one" in place, and "two" in a staging folder beside it.
struct CopiesTest : testing::Test {
    QTemporaryDir folder;
    std::string place = folder.filePath("tamsel").toStdString();
    std::optional<OwnFolder> staging;
    std::string tree;

    CopiesTest() {
        put("tamsel/share/tamsel/Info.plist", "one");
        stage();
    }
    void stage() {
        staging = *OwnFolder::make(stagingPrefix(place));
        tree = unpackedIn(*staging) + "/two";
        put(QString::fromStdString(tree).mid(folder.path().size() + 1) + "/share/tamsel/Info.plist",
            "two");
    }
    void put(const QString& name, const QByteArray& bytes) const {
        writeFile(folder.filePath(name), bytes);
    }
    std::string inPlace() const {
        QFile file(QString::fromStdString(place) + "/share/tamsel/Info.plist");
        return file.open(QFile::ReadOnly) ? file.readAll().toStdString() : "nothing";
    }
    QStringList beside() const {
        return QDir(folder.path()).entryList({".tamsel*"}, QDir::AllEntries | QDir::Hidden);
    }
    /// As the relauncher leaves it when it ends right after the exchange.
    void exchangeAndDie() {
        ASSERT_TRUE(noteTrial(*staging, tree, "2"));
        ASSERT_TRUE(exchangeCopies(place, tree));
        staging.reset();
    }
};

TEST_F(CopiesTest, OnlyWhatIsOursIsRemoved) {
    staging.reset();
    put("theirs/file", "x");
    put(".tamsel.update-open/file", "x"); // 0755, as nothing of ours is
    QFile::link(folder.filePath("theirs"), folder.filePath(".tamsel.update-link"));
    put(".tamsel.update-ours/a/b/file", "x");
    put(".tamsel.update-ours/shut/file", "x");
    const QString ours = folder.filePath(".tamsel.update-ours");
    QFile::link(folder.filePath("theirs"), ours + "/a/link");
    ::chmod(qPrintable(ours + "/shut"), 0);
    ::chmod(qPrintable(ours), 0700);
    put(".tamsel.update-foreign/file", "x");
    const QString foreign = folder.filePath(".tamsel.update-foreign");
    ::chmod(qPrintable(foreign), 0700);
    QStringList left{".tamsel.update-link", ".tamsel.update-open"};
    if (::chown(qPrintable(foreign), 12345, 12345) == 0)
        left.prepend(".tamsel.update-foreign");
    CopyStart::clearLeftovers(place);
    EXPECT_EQ(beside(), left);
    EXPECT_TRUE(QFile::exists(folder.filePath("theirs/file")))
        << "a link goes, not what it leads to";
    // What is swapped in after the folder was opened is not what was opened.
    const auto swapped = OwnFolder::make(folder.filePath("swap-").toStdString());
    ASSERT_TRUE(swapped);
    const QString path = QString::fromStdString(swapped->path());
    QFile::rename(path, folder.filePath("away"));
    QFile::link(folder.filePath("theirs"), path);
    EXPECT_FALSE(swapped->remove());
    EXPECT_TRUE(QFile::exists(path + "/file"));
}

TEST_F(CopiesTest, AnExchangeThatWasCutShortIsSettledAtTheNextStart) {
    exchangeAndDie();
    const auto back = CopyStart(tree).takenBack();
    ASSERT_TRUE(back) << "the copy before comes back when it is started";
    EXPECT_EQ(back->program, place + "/bin/tamsel");
    EXPECT_EQ(inPlace(), "one");
    EXPECT_EQ(beside(), QStringList{});
    stage();
    exchangeAndDie();
    {
        const CopyStart first(place);
        EXPECT_FALSE(first.takenBack());
        CopyStart::clearLeftovers(place);
        EXPECT_EQ(beside().size(), 1) << "the copy before it stays until the new one works";
        EXPECT_FALSE(CopyStart(place).takenBack()) << "another start does not judge this one";
    }
    CopyStart second(place);
    ASSERT_TRUE(second.takenBack());
    EXPECT_EQ(second.takenBack()->program, place + "/bin/tamsel");
    EXPECT_EQ(second.takenBack()->version, "2");
    EXPECT_EQ(inPlace(), "one");
    EXPECT_EQ(beside(), QStringList{});
}

TEST_F(CopiesTest, AVersionThatWorksStays) {
    exchangeAndDie();
    CopyStart(place).works();
    EXPECT_FALSE(CopyStart(place).takenBack());
    CopyStart::clearLeftovers(place);
    EXPECT_EQ(beside(), QStringList{});
    EXPECT_EQ(inPlace(), "two");
}

TEST_F(CopiesTest, TheRelauncherJudgesWhileItLives) {
    ASSERT_TRUE(noteTrial(*staging, tree, "2"));
    EXPECT_FALSE(trialOf(*staging, place)) << "not exchanged yet";
    ASSERT_TRUE(exchangeCopies(place, tree));
    ASSERT_TRUE(beginTrial(*staging));
    CopyStart start(place);
    EXPECT_FALSE(start.takenBack());
    start.works();
    EXPECT_FALSE(trialOf(*staging, place)) << "should it end before it has read the word";
    staging.reset();
    EXPECT_FALSE(CopyStart(place).takenBack());
}

TEST(ProgramStart, CountsWithAFrameAndACall) {
    struct AtOnce final : BackgroundQueue {
        void run(std::function<void()> task) override { task(); }
        void finish() override {}
    } background;
    for (const bool frameFirst : {true, false}) {
        int pipe[2];
        ASSERT_EQ(::pipe2(pipe, O_NONBLOCK), 0);
        QByteArray words[]{"tamsel", "--report-to", QByteArray::number(pipe[1])};
        char* argv[]{words[0].data(), words[1].data(), words[2].data(), nullptr};
        int argc = 3;
        ProgramStart start(argc, argv);
        char line[9]{};
        start.expect(background, "150");
        frameFirst ? start.frameShown() : start.daemonCalled();
        EXPECT_EQ(::read(pipe[0], line, 8), -1) << "not yet";
        frameFirst ? start.daemonCalled() : start.frameShown();
        EXPECT_EQ(::read(pipe[0], line, 8), 4);
        EXPECT_STREQ(line, "150\n");
        start.frameShown();
        EXPECT_EQ(::read(pipe[0], line, 8), 0) << "once, and the end is closed";
    }
}

TEST(RelaunchOrder, ReportsToAPipeOfItsOwnOnly) {
    const QTemporaryDir folder;
    int pipe[2];
    int sockets[2];
    ASSERT_EQ(::pipe(pipe), 0);
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, sockets), 0);
    const QByteArray file = QFile::encodeName(folder.filePath("file"));
    const QByteArray fifo = QFile::encodeName(folder.filePath("fifo"));
    ASSERT_EQ(::mkfifo(fifo.constData(), 0600), 0);
    const int reader = ::open(fifo.constData(), O_RDONLY | O_NONBLOCK);
    const std::pair<QByteArray, bool> cases[]{
        {QByteArray::number(pipe[1]), true},
        {QByteArray::number(pipe[0]), false},
        {QByteArray::number(sockets[0]), false},
        {QByteArray::number(::open(file.constData(), O_WRONLY | O_CREAT, 0600)), false},
        {QByteArray::number(::open(fifo.constData(), O_WRONLY)), false},
        {"1", false},
        {"2", false},
        {"999", false},
        {QByteArray::number(pipe[1]) + "x", false},
        {"", false},
    };
    for (auto [fd, isTaken] : cases) {
        QByteArray words[]{"tamsel", "--report-to", fd, "tamsel://page", "--update-failed", "7"};
        std::vector<char*> argv;
        for (QByteArray& word : words)
            argv.push_back(word.data());
        argv.push_back(nullptr);
        int argc = 6;
        const auto order = RelaunchOrder::takeFrom(argc, argv.data());
        EXPECT_EQ(order.reportTo.has_value(), isTaken) << fd.toStdString();
        EXPECT_EQ(order.failedVersion, "7");
        ASSERT_EQ(argc, 2);
        EXPECT_STREQ(argv[1], "tamsel://page");
        EXPECT_EQ(argv[2], nullptr);
    }
    ::close(reader);
}

} // namespace tamsel
