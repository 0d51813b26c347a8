#include "core/order_memory.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tamsel {
namespace {

namespace fs = std::filesystem;

class OrderMemoryTest : public testing::Test {
protected:
    ~OrderMemoryTest() override { fs::remove_all(m_root); }

    fs::path m_root = fs::temp_directory_path() / ("tamsel-order-" + std::to_string(::getpid()));
    fs::path m_folder = m_root / "deep" / "state";
    FileOrderMemory m_memory{m_folder.string()};
};

TEST_F(OrderMemoryTest, keepsTheLastOrderInAPrivateFolder) {
    EXPECT_EQ(m_memory.load(), Order::start);
    for (const Order order : {Order::stop, Order::start, Order::stop}) {
        ASSERT_TRUE(m_memory.save(order));
        EXPECT_EQ(FileOrderMemory(m_folder.string()).load(), order);
    }
    struct stat info {};
    ASSERT_EQ(::stat(m_folder.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777U, 0700U);
}

TEST_F(OrderMemoryTest, whatCannotBeReadIsNoStop) {
    ASSERT_TRUE(m_memory.save(Order::stop));
    const fs::path file = m_folder / "last-order";
    for (const char* const text : {"", "stop", "stopped", "stopped\nstopped\n", "\xff\xfe"}) {
        std::ofstream(file, std::ios::trunc) << text;
        EXPECT_EQ(m_memory.load(), Order::start) << text;
    }
    fs::remove(file);
    fs::create_directory(file);
    EXPECT_EQ(m_memory.load(), Order::start);
    EXPECT_FALSE(m_memory.save(Order::stop));
}

} // namespace
} // namespace tamsel
