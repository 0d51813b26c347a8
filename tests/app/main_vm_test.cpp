#include "app/main_vm.h"

#include "platform/notification_center.h"

#include <gtest/gtest.h>

namespace tamsel {
namespace {

TEST(MainVM, NavigatesByPageName) {
    const struct {
        const char* pages;
        MainVM::MenuItem from;
        MainVM::MenuItem to;
    } cases[] = {
        {"settings|Settings|ABOUT", MainVM::Dashboard, MainVM::About},
        {"mapping|Map", MainVM::Dashboard, MainVM::Mapping},
        {"combo|shortcut", MainVM::Dashboard, MainVM::Combo},
        {"devices|device", MainVM::Dashboard, MainVM::Devices},
        {"dashboard|Dash|", MainVM::About, MainVM::Dashboard},
        {"help| mapping|mappings", MainVM::Combo, MainVM::Combo},
    };
    for (const auto& c : cases) {
        for (const QString& page : QString(c.pages).split('|')) {
            NotificationCenter notifications;
            MainVM main(notifications);
            main.select(c.from);
            int changes = 0;
            QObject::connect(&main, &MainVM::selectedChanged, [&] { ++changes; });
            Q_EMIT notifications.navigateToPage(page);
            EXPECT_EQ(main.selected(), c.to) << page.toStdString();
            EXPECT_EQ(changes, c.from == c.to ? 0 : 1) << page.toStdString();
        }
    }
}

TEST(MainVM, PlainKeysChooseScreensAndAdd) {
    NotificationCenter notifications;
    MainVM main(notifications);
    EXPECT_EQ(main.selected(), MainVM::Dashboard);
    int posted = 0;
    int requested = 0;
    QObject::connect(&notifications, &NotificationCenter::keyboardShortcutA, [&] { ++posted; });
    QObject::connect(&main, &MainVM::addRequested, [&] { ++requested; });
    const auto keys = main.screenKeys();
    EXPECT_EQ(keys.size(), 6U);
    for (const auto item :
         {MainVM::About, MainVM::Devices, MainVM::Combo, MainVM::Mapping, MainVM::Dashboard}) {
        keys.at(QChar(u'1' + item))();
        EXPECT_EQ(main.selected(), item);
    }
    keys.at(u'a')();
    EXPECT_EQ(posted, 1);
    EXPECT_EQ(requested, 1);
}

TEST(MainVM, CountsAsHiddenUntilTheWindowIsShownAgain) {
    NotificationCenter notifications;
    MainVM main(notifications);
    int changes = 0;
    int reopens = 0;
    QObject::connect(&main, &MainVM::isHiddenChanged, [&] { ++changes; });
    QObject::connect(&main, &MainVM::reopened, [&] { ++reopens; });
    for (int i = 0; i < 2; ++i)
        Q_EMIT notifications.applicationDidHide();
    EXPECT_TRUE(main.isHidden());
    Q_EMIT notifications.mainWindowReopen();
    EXPECT_FALSE(main.isHidden());
    EXPECT_EQ(std::pair(changes, reopens), std::pair(2, 1));
}

} // namespace
} // namespace tamsel
