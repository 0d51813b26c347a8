#include "platform/linux/process/administrator_script.h"
#include "platform/linux/process/child_process_runner.h"
#include "platform/linux/process/thread_background_queue.h"
#include "support/files.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <future>

namespace tamsel {

namespace {

QString script(const QString& command) {
    return "do shell script \"" + command + "\" with administrator privileges";
}

const QString shell = QStringLiteral("/bin/sh");

} // namespace

TEST(AdministratorScriptTest, OnlyAListOfKillsIsAccepted) {
    EXPECT_EQ(processesToKill(script("kill -9 812")), QStringList{"812"});
    EXPECT_EQ(processesToKill(script("kill -9 2; kill -9 4194304; kill -9 2")),
              (QStringList{"2", "4194304", "2"}));
    const QString refused =
        "|kill -9 |kill -9 1|kill -9 0|kill -9 -7|kill -9 +7|kill -9 4194305|kill -9 0812|"
        "kill -9 99999999999999999999|kill -9 812;|kill -9 812; |; kill -9 812|"
        "kill -9 812;kill -9 990|kill -9 812; rm -rf /|kill -9 812; kill -15 990|kill -9 812 990|"
        "kill -9  812|kill -9 812\n|kill -9 812$(id)|kill -9 812\\|kill -9 \u0661\u0662|"
        "kill -9 812\" with administrator privileges; do shell script \"kill -9 990";
    for (const QString& text : refused.split('|'))
        EXPECT_EQ(processesToKill(script(text)), std::nullopt) << text.toStdString();
    for (const QString& text :
         {QString(), QString("kill -9 812"), script("kill -9 812") + " ",
          " " + script("kill -9 812"), QString("do shell script \" with administrator privileges")})
        EXPECT_EQ(processesToKill(text), std::nullopt) << text.toStdString();
}

TEST(ChildProcessRunnerTest, WaitsForTheEndAndTakesAllOutput) {
    ChildProcessRunner::Settings settings;
    settings.limit = std::chrono::seconds(10); // less than the descendant below stays
    ChildProcessRunner runner(settings);
    const auto run = [&](const QString& text) { return runner.run(shell, {"-c", text}); };
    const std::vector<std::tuple<QString, int, QByteArray>> cases{
        {"echo 812; echo 990", 0, "812\n990\n"},
        {"echo no >&2; exit 3", 3, ""},
        {"kill -9 $$", 128 + SIGKILL, ""},
        {"exec >&-; exit 4", 4, ""},
        {"cat", 0, ""}, // nothing to read from
        {"exec 2>&-; sleep 15 & echo done", 0, "done\n"},
    };
    for (const auto& [text, status, output] : cases) {
        const auto result = run(text);
        ASSERT_TRUE(result) << text.toStdString();
        EXPECT_EQ(result->exitStatus, status) << text.toStdString();
        EXPECT_EQ(result->standardOutput, output) << text.toStdString();
    }
    const auto large = run("head -c 1000000 /dev/zero");
    ASSERT_TRUE(large);
    EXPECT_EQ(large->standardOutput.size(), 1'000'000);
    EXPECT_FALSE(runner.run("/no/such/program", {}));
}

TEST(ChildProcessRunnerTest, WhatTakesTooMuchIsGivenUp) {
    ChildProcessRunner::Settings settings;
    settings.limit = std::chrono::milliseconds(50);
    EXPECT_FALSE(ChildProcessRunner(settings).run(shell, {"-c", "exec sleep 60"}));
    settings.limit = std::chrono::seconds(60);
    settings.maxOutput = 1000;
    EXPECT_FALSE(ChildProcessRunner(settings).run(shell, {"-c", "exec cat /dev/zero"}));
}

TEST(ChildProcessRunnerTest, TheAdministratorScriptBecomesOneAuthorizedKill) {
    const QTemporaryDir folder;
    const QString pkexec = folder.filePath("pkexec");
    writeFile(pkexec, "#!/bin/sh\necho \"$*\"\nexit 126\n", QFile::ReadOwner | QFile::ExeOwner);
    ChildProcessRunner::Settings settings;
    settings.authorize = pkexec;
    ChildProcessRunner runner(settings);
    const QString osascript = "/usr/bin/osascript";

    const auto result = runner.run(osascript, {"-e", script("kill -9 812; kill -9 990")});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->standardOutput, "--disable-internal-agent /bin/kill -9 812 990\n");
    EXPECT_EQ(result->exitStatus, 126);
    for (const QStringList& words : QList<QStringList>{{"-e", script("id")},
                                                       {script("kill -9 812")},
                                                       {"-e", script("kill -9 812"), "more"},
                                                       {"-s", script("kill -9 812")}}) {
        const auto refused = runner.run(osascript, words);
        ASSERT_TRUE(refused);
        EXPECT_EQ(refused->exitStatus, 1);
        EXPECT_TRUE(refused->standardOutput.isEmpty()) << "nothing was run";
    }
    settings.authorize = folder.filePath("missing");
    EXPECT_FALSE(ChildProcessRunner(settings).run(osascript, {"-e", script("kill -9 812")}));
}

TEST(ThreadBackgroundQueueTest, EndsAlthoughATaskWaitsForAProgram) {
    ChildProcessRunner runner;
    std::promise<void> begun;
    std::vector<bool> succeeded;
    {
        ThreadBackgroundQueue queue([&] { runner.stop(); });
        queue.run([&] {
            begun.set_value();
            for (const char* text : {"exec sleep 60", "true"})
                succeeded.push_back(runner.run(shell, {"-c", text}).has_value());
        });
        begun.get_future().wait();
        queue.finish();
        queue.run([&] { succeeded.push_back(true); });
    }
    EXPECT_EQ(succeeded, std::vector<bool>(2, false)) << "waited for, and interrupted";
}

} // namespace tamsel
