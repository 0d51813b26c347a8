#include "platform/linux/services/autostart_entry.h"

#include "support/files.h"

#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tamsel {

struct AutostartEntryTest : testing::Test {
    QTemporaryDir folder;
    QString file = folder.filePath("autostart/app.tamsel.desktop");

    AutostartEntry entry(const QString& program = "/bin/sh") const { return {file, program}; }
};

// Whatever the folder is called, the entry is valid and starts exactly that program, as long as it
// is there.
TEST_F(AutostartEntryTest, QuotesEveryPath) {
    for (const QString name :
         {"plain", "with blank", "per%cent %U", "quo\"te", "back\\slash", "$HOME `id`", "鍵盤",
          "semi;colon & # ' \\\" (x)", "tab\there", "trailing\\"}) {
        const QString program = folder.filePath(name + "/tamsel");
        writeFile(program, "#!/bin/sh\nprintf %s \"$0\" > \"$TAMSEL_STARTED\"\n",
                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        auto subject = entry(program);
        ASSERT_TRUE(subject.registerService());
        EXPECT_EQ(subject.status(), ServiceStatus::enabled) << qPrintable(name);

        QProcess check;
        check.start("desktop-file-validate", {file});
        ASSERT_TRUE(check.waitForFinished());
        EXPECT_EQ(check.exitCode(), 0) << check.readAll().constData();

        if (name.contains('%'))
            continue; // which the reader below never undoes in a program's name
        // An independent reader of such entries starts it, and finds no entry once it is gone.
        const QString started = folder.filePath("started");
        QFile::remove(started);
        qputenv("TAMSEL_STARTED", QFile::encodeName(started));
        QProcess launch;
        launch.start("/usr/bin/python3",
                     {"-c",
                      "import sys, time, os\nfrom gi.repository import Gio\n"
                      "Gio.DesktopAppInfo.new_from_filename(sys.argv[1]).launch()\n"
                      "end = time.monotonic() + 20\n"
                      "while time.monotonic() < end and not (os.path.exists(sys.argv[2]) and "
                      "os.path.getsize(sys.argv[2])): time.sleep(.01)\n"
                      "os.remove(sys.argv[3])\n"
                      "try: Gio.DesktopAppInfo.new_from_filename(sys.argv[1])\n"
                      "except TypeError: sys.exit()\n"
                      "sys.exit('it is still to be started')\n",
                      file, started, program});
        ASSERT_TRUE(launch.waitForFinished());
        EXPECT_EQ(launch.exitCode(), 0) << launch.readAllStandardError().constData();
        QFile out(started);
        ASSERT_TRUE(out.open(QFile::ReadOnly)) << qPrintable(name);
        EXPECT_EQ(QString::fromUtf8(out.readAll()), program);
    }
}

TEST_F(AutostartEntryTest, EnabledMeansThatItStartsSomething) {
    auto subject = entry();
    EXPECT_EQ(subject.status(), ServiceStatus::notRegistered);
    EXPECT_TRUE(subject.unregisterService()) << "nothing there is nothing to remove";
    ASSERT_TRUE(subject.registerService());
    ASSERT_TRUE(subject.registerService()) << "an entry is renewed";
    EXPECT_EQ(subject.status(), ServiceStatus::enabled);
    const struct {
        const char* text;
        bool isEnabled;
    } rows[] = {
        {"[Desktop Entry]\nExec=sh -c x\n", true},
        {"[Desktop Entry]\nExec=\"/bin/sh\" --x\nHidden=false\n", true},
        {"[Desktop Entry]\nExec=/bin/sh\nHidden=true\n", false},
        {"[Desktop Entry]\nExec=/bin/sh\nX-GNOME-Autostart-enabled=false\n", false},
        {"[Desktop Entry]\nExec=/nowhere/tamsel\n", false},
        {"[Desktop Entry]\nTryExec=/nowhere/tamsel\nExec=/bin/sh\n", false},
        {"[Desktop Entry]\nTryExec=\nExec=/bin/sh\n", true},
        {"[Desktop Entry]\n[Desktop Action x]\nExec=/bin/sh\n", false},
        {"[Desktop Entry]\nExec=/bin/sh\n[Desktop Action x]\nHidden=true\n", true},
        {"[Desktop Entry]\nExec=\"/bin/sh\\", false},
        {"", false},
    };
    for (const auto& row : rows) {
        writeFile(file, row.text);
        EXPECT_EQ(subject.status() == ServiceStatus::enabled, row.isEnabled) << row.text;
    }
    ASSERT_TRUE(subject.unregisterService());
    EXPECT_FALSE(QFile::exists(file));
    EXPECT_EQ(subject.status(), ServiceStatus::notRegistered);
}

TEST_F(AutostartEntryTest, AFailureSaysWhere) {
    writeFile(folder.filePath("autostart"), "a file in the folder's place");
    const ServiceResult result = entry().registerService();
    ASSERT_FALSE(result);
    EXPECT_FALSE(result.error().isAlreadyRegistered());
    EXPECT_TRUE(result.error().localizedDescription.contains("autostart"));
}

} // namespace tamsel
