// Takes orders of one line from the tests and answers each with a line "= ..."; see the words'
// headers. In between it says what it sees, in lines that begin with "@".

#include "bus_client.h"
#include "nodes.h"
#include "processes.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <sstream>
#include <termios.h>
#include <unistd.h>

namespace vm {

namespace {

int line = -1;

void writeAll(const std::string& text) {
    for (std::size_t at = 0; at < text.size();) {
        const ssize_t count = ::write(line, text.data() + at, text.size() - at);
        if (count > 0)
            at += static_cast<std::size_t>(count);
    }
}

using Order = std::string (*)(const Words&);

const std::map<std::string, Order> orders{
    {"watch", nodes::watch},     {"unwatch", nodes::unwatch}, {"grab", nodes::grab},
    {"held", nodes::held},       {"make", nodes::make},       {"emit", nodes::emit},
    {"flood", nodes::flood},     {"drop", nodes::drop},       {"write", nodes::write},
    {"names", nodes::names},     {"start", processes::start}, {"signal", processes::signal},
    {"shell", processes::shell}, {"connect", bus::connect},   {"call", bus::call},
};

void obey(const std::string& text) {
    std::istringstream stream(text);
    Words words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    if (words.empty())
        return;
    std::string answer;
    try {
        const auto order = orders.find(words[0]);
        answer = order == orders.end() ? "failed: no such order" : order->second(words);
    } catch (const Failure& failure) {
        answer = "failed: " + failure.text;
    } catch (const std::exception& error) {
        answer = std::string("failed: ") + error.what();
    }
    say("= " + answer);
}

void openLine(const char* path) {
    line = ::open(path, O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios raw{};
    ::tcgetattr(line, &raw);
    ::cfmakeraw(&raw);
    ::tcsetattr(line, TCSANOW, &raw);
}

void readOrders(std::string& pending) {
    char buffer[4096];
    const ssize_t count = ::read(line, buffer, sizeof buffer);
    pending.append(buffer, static_cast<std::size_t>(count > 0 ? count : 0));
    for (std::size_t end = 0; (end = pending.find('\n')) != std::string::npos;) {
        const std::string order = pending.substr(0, end);
        pending.erase(0, end + 1);
        obey(order);
    }
}

[[noreturn]] void run() {
    std::string pending;
    constexpr int pause = 20;
    for (;;) {
        std::vector<pollfd> polled{{line, POLLIN, 0}, {bus::fd(), POLLIN, 0}};
        nodes::addTo(polled);
        ::poll(polled.data(), polled.size(), pause);
        processes::reap();
        // What was seen before an order is told before its answer.
        for (std::size_t i = 2; i < polled.size(); ++i) {
            if (polled[i].revents != 0)
                nodes::handle(polled[i]);
        }
        bus::process();
        if (polled[0].revents != 0)
            readOrders(pending);
    }
}

} // namespace

void say(const std::string& text) {
    writeAll(text + "\n");
}

void require(bool isDone, const std::string& what) {
    if (!isDone)
        throw Failure{what + ": " + std::strerror(errno)};
}

} // namespace vm

int main(int /*count*/, char** arguments) {
    vm::openLine(arguments[1]);
    vm::say("@guest ready");
    vm::run();
}
