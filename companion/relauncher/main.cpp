#include "copies/exchange.h"
#include "copies/trial.h"
#include "relauncher/started_copy.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <unistd.h>

namespace {

constexpr std::chrono::seconds reportPatience{30};

struct Order {
    std::string copy;    ///< the folder to replace
    std::string tree;    ///< the folder to replace it with
    std::string staging; ///< goes in the end
    std::string version; ///< that the new copy must report
    std::chrono::seconds patience = reportPatience;
};

/// The application holds the other end of standard input until it is gone, however it goes.
void waitForTheApplication() {
    std::array<char, 64> bytes{};
    for (;;) {
        const auto got = ::read(STDIN_FILENO, bytes.data(), bytes.size());
        if (got == 0 || (got < 0 && errno != EINTR))
            return;
    }
}

int giveUp(const Order& order, const std::string& reason) {
    std::fprintf(stderr, "tamsel-relauncher: %s\n", reason.c_str());
    tamsel::StartedCopy::afterFailureOf(order.version, order.copy);
    return EXIT_FAILURE;
}

int replace(const Order& order, const tamsel::OwnFolder& staging) {
    if (!tamsel::isAsRemembered(staging, order.copy)) {
        std::fputs("tamsel-relauncher: the copy is another one by now\n", stderr);
        tamsel::StartedCopy::asUsual(order.copy);
        return EXIT_FAILURE;
    }
    auto done = tamsel::noteTrial(staging, order.tree, order.version);
    if (done)
        done = tamsel::exchangeCopies(order.copy, order.tree);
    if (!done)
        return giveUp(order, done.error().description());
    // Noted first: should this process end here, the next start knows that there was one.
    static_cast<void>(tamsel::beginTrial(staging));
    const auto started = tamsel::StartedCopy::toReport(order.copy);
    if (started.reports(order.version, order.patience))
        return EXIT_SUCCESS;
    started.end();
    if (const auto back = tamsel::exchangeCopies(order.copy, order.tree); !back)
        return giveUp(order, back.error().description());
    return giveUp(order, "version " + order.version + " did not start; the one before it is back");
}

} // namespace

int main(int argc, char** argv) {
    const std::span words(argv, static_cast<std::size_t>(argc));
    if (words.size() < 5) {
        std::fputs("usage: tamsel-relauncher COPY TREE STAGING VERSION [SECONDS]\n", stderr);
        return EXIT_FAILURE;
    }
    Order order{words[1], words[2], words[3], words[4]};
    if (words.size() > 5)
        order.patience = std::chrono::seconds(std::strtol(words[5], nullptr, 10));
    const auto staging = tamsel::OwnFolder::open(order.staging, tamsel::OwnFolder::Lock::shared);
    waitForTheApplication();
    if (!staging)
        return giveUp(order, staging.error().description());
    const int status = replace(order, *staging);
    // With the copy that is not in place, whichever it is.
    static_cast<void>(staging->remove());
    return status;
}
