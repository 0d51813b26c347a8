// Saves values of many sizes without pause until it is killed: save_loop FILE SEED
// Says so on standard output after the first one.

#include "platform/linux/store/sqlite_user_defaults.h"

#include <QString>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
    if (argc != 3)
        return 2;
    auto store = tamsel::SqliteUserDefaults::open(QString::fromLocal8Bit(argv[1]));
    if (!store) {
        std::fprintf(stderr, "save_loop: %s\n", store.error().description().c_str());
        return 1;
    }
    const int first = std::atoi(argv[2]) * 7;
    for (int i = first;; ++i) {
        const char byte = static_cast<char>(i % 256);
        if (!(*store)->setData(QByteArray(20'000 + static_cast<uchar>(byte), byte), "k"))
            return 1;
        if (i == first)
            std::puts("saving");
        std::fflush(stdout);
    }
}
