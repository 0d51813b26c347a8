#include "app/main_vm.h"

#include "platform/notification_center.h"

#include <gtest/gtest.h>

namespace tamsel {
namespace {

TEST(MainVM, NavigatesByPageName) {
    const struct {
        const char* page;
        MainVM::MenuItem from;
        MainVM::MenuItem to;
    } cases[] = {
        {"settings", MainVM::Dashboard, MainVM::About},
        {"Settings", MainVM::Dashboard, MainVM::About},
        {"ABOUT", MainVM::Dashboard, MainVM::About},
        {"mapping", MainVM::Dashboard, MainVM::Mapping},
        {"Map", MainVM::Dashboard, MainVM::Mapping},
        {"combo", MainVM::Dashboard, MainVM::Combo},
        {"shortcut", MainVM::Dashboard, MainVM::Combo},
        {"devices", MainVM::Dashboard, MainVM::Devices},
        {"device", MainVM::Dashboard, MainVM::Devices},
        {"dashboard", MainVM::About, MainVM::Dashboard},
        {"Dash", MainVM::About, MainVM::Dashboard},
        {"", MainVM::Combo, MainVM::Dashboard},
        {"help", MainVM::Combo, MainVM::Combo},
        {" mapping", MainVM::Combo, MainVM::Combo},
        {"mappings", MainVM::Devices, MainVM::Devices},
    };
    for (const auto& c : cases) {
        NotificationCenter notifications;
        MainVM main(notifications);
        main.select(c.from);
        int changes = 0;
        QObject::connect(&main, &MainVM::selectedChanged, [&] { ++changes; });
        Q_EMIT notifications.navigateToPage(QString::fromUtf8(c.page));
        EXPECT_EQ(main.selected(), c.to) << '"' << c.page << '"';
        EXPECT_EQ(changes, c.from == c.to ? 0 : 1) << '"' << c.page << '"';
    }
}

TEST(MainVM, StartsOnTheDashboard) {
    NotificationCenter notifications;
    EXPECT_EQ(MainVM(notifications).selected(), MainVM::Dashboard);
}

TEST(MainVM, PlainKeysChooseScreensAndAdd) {
    NotificationCenter notifications;
    MainVM main(notifications);
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
