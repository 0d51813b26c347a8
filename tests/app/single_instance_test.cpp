#include "platform/linux/desktop/single_instance.h"

#include <gtest/gtest.h>

namespace tamsel {

TEST(SingleInstance, TakesUrlsFromTheArguments) {
    const QStringList urls{"tamsel://devices", "TAMSEL:x", "web+tamsel://a", "https://a.b/c"};
    EXPECT_EQ(
        SingleInstance::urlsOf(QStringList{"--help", "devices", "", "1://a", ":x", "-a:b"} + urls),
        urls);
}

TEST(SingleInstance, GoesOnAloneWithoutABus) {
    SingleInstance instance(QDBusConnection::connectToBus("unix:path=/nowhere", "nowhere"));
    EXPECT_EQ(instance.claim({"tamsel://devices"}), SingleInstance::Role::running);
}

} // namespace tamsel
