#include "nodes.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <linux/uinput.h>
#include <map>
#include <sys/ioctl.h>
#include <unistd.h>

namespace vm::nodes {

namespace {

struct Watched {
    int fd = -1;
    std::string frame;
};

std::map<std::string, Watched> watched;
std::map<std::string, int> made;

std::string nameOf(int fd) {
    char name[256] = "";
    ::ioctl(fd, EVIOCGNAME(sizeof name), name);
    return name;
}

std::vector<int> nodeNumbers() {
    std::vector<int> numbers;
    DIR* const folder = ::opendir("/dev/input");
    while (const dirent* entry = folder ? ::readdir(folder) : nullptr) {
        if (std::strncmp(entry->d_name, "event", 5) == 0)
            numbers.push_back(std::atoi(entry->d_name + 5));
    }
    if (folder)
        ::closedir(folder);
    std::sort(numbers.rbegin(), numbers.rend());
    return numbers;
}

std::string joined(const Words& words, std::size_t from) {
    std::string text;
    for (std::size_t i = from; i < words.size(); ++i)
        text += (i > from ? " " : "") + words[i];
    return text;
}

input_event event(const std::string& text) {
    int numbers[3] = {};
    const char* at = text.c_str();
    for (int& number : numbers) {
        at = std::from_chars(at, text.c_str() + text.size(), number).ptr;
        at += *at == '/';
    }
    input_event parsed{};
    parsed.type = static_cast<__u16>(numbers[0]);
    parsed.code = static_cast<__u16>(numbers[1]);
    parsed.value = numbers[2];
    return parsed;
}

void send(int fd, const Words& words, std::size_t from) {
    std::vector<input_event> events;
    for (std::size_t i = from; i < words.size(); ++i)
        events.push_back(event(words[i]));
    events.push_back(input_event{});
    const auto size = events.size() * sizeof(input_event);
    require(::write(fd, events.data(), size) == static_cast<ssize_t>(size), "write");
}

int bitRequest(int type) {
    switch (type) {
    case EV_KEY:
        return UI_SET_KEYBIT;
    case EV_REL:
        return UI_SET_RELBIT;
    case EV_MSC:
        return UI_SET_MSCBIT;
    case EV_LED:
        return UI_SET_LEDBIT;
    case EV_SW:
        return UI_SET_SWBIT;
    default:
        throw Failure{"no such type"};
    }
}

void declare(int fd, const std::string& text) {
    const std::size_t colon = text.find(':');
    const int type = std::stoi(text.substr(0, colon));
    require(::ioctl(fd, UI_SET_EVBIT, type) == 0, "UI_SET_EVBIT");
    for (std::size_t at = colon; at != std::string::npos && at + 1 < text.size();) {
        const std::size_t comma = text.find(',', at + 1);
        const std::string range = text.substr(at + 1, comma - at - 1);
        const std::size_t dash = range.find('-');
        const int first = std::stoi(range);
        const int last = dash == std::string::npos ? first : std::stoi(range.substr(dash + 1));
        for (int code = first; code <= last; ++code)
            require(::ioctl(fd, static_cast<unsigned long>(bitRequest(type)), code) == 0, "bit");
        at = comma;
    }
}

Watched& find(const std::string& label) {
    const auto found = watched.find(label);
    if (found == watched.end())
        throw Failure{"not watched: " + label};
    return found->second;
}

int openByName(const std::string& name, int mode) {
    for (const int number : nodeNumbers()) {
        const int fd = ::open(("/dev/input/event" + std::to_string(number)).c_str(),
                              mode | O_NONBLOCK | O_CLOEXEC);
        if (fd >= 0 && nameOf(fd) == name)
            return fd;
        if (fd >= 0)
            ::close(fd);
    }
    throw Failure{"there is no " + name};
}

int findMade(const std::string& label) {
    const auto found = made.find(label);
    if (found == made.end())
        throw Failure{"not made: " + label};
    return found->second;
}

std::string textOf(const input_event& event) {
    return " " + std::to_string(event.type) + "/" + std::to_string(event.code) + "/" +
           std::to_string(event.value);
}

/// False at the end.
bool read(const std::string& label, Watched& node) {
    input_event events[64];
    const ssize_t count = ::read(node.fd, events, sizeof events);
    if (count < 0 && errno == EAGAIN)
        return true;
    if (count <= 0) {
        say("@gone " + label);
        return false;
    }
    for (ssize_t i = 0; i < count / static_cast<ssize_t>(sizeof(input_event)); ++i) {
        // Repetitions depend on how fast the machine is, lights on the console's Caps Lock.
        if ((events[i].type == EV_KEY && events[i].value == 2) || events[i].type == EV_LED)
            continue;
        if (events[i].type != EV_SYN || events[i].code == SYN_DROPPED) {
            node.frame += textOf(events[i]);
        } else if (!node.frame.empty()) {
            say("@" + label + node.frame);
            node.frame.clear();
        }
    }
    return true;
}

} // namespace

std::string watch(const Words& words) {
    unwatch(words);
    watched[words.at(1)].fd = openByName(joined(words, 2), O_RDWR);
    return "";
}

std::string unwatch(const Words& words) {
    if (const auto found = watched.find(words.at(1)); found != watched.end()) {
        ::close(found->second.fd);
        watched.erase(found);
    }
    return "";
}

std::string grab(const Words& words) {
    const int value = words.at(2) == "1" ? 1 : 0;
    require(::ioctl(find(words.at(1)).fd, EVIOCGRAB, value) == 0, "EVIOCGRAB");
    return "";
}

std::string held(const Words& words) {
    const int fd = openByName(joined(words, 1), O_RDONLY);
    unsigned char bits[KEY_MAX / 8 + 1] = {};
    ::ioctl(fd, EVIOCGKEY(sizeof bits), bits);
    ::close(fd);
    std::string codes;
    for (int code = 0; code < KEY_MAX; ++code) {
        if ((bits[code / 8] >> (code % 8) & 1) != 0)
            codes += (codes.empty() ? "" : " ") + std::to_string(code);
    }
    return codes;
}

std::string make(const Words& words) {
    const int fd = ::open("/dev/uinput", O_RDWR | O_NONBLOCK | O_CLOEXEC);
    require(fd >= 0, "uinput");
    uinput_setup setup{};
    std::string name = words.at(2);
    std::replace(name.begin(), name.end(), '_', ' ');
    std::strncpy(setup.name, name.c_str(), sizeof setup.name - 1);
    setup.id = {static_cast<__u16>(std::stoi(words.at(3))),
                static_cast<__u16>(std::stoi(words.at(4))),
                static_cast<__u16>(std::stoi(words.at(5))), 1};
    for (std::size_t i = 6; i < words.size(); ++i)
        declare(fd, words[i]);
    require(::ioctl(fd, UI_DEV_SETUP, &setup) == 0, "UI_DEV_SETUP");
    require(::ioctl(fd, UI_DEV_CREATE) == 0, "UI_DEV_CREATE");
    made[words.at(1)] = fd;
    return "";
}

std::string emit(const Words& words) {
    send(findMade(words.at(1)), words, 2);
    return "";
}

std::string flood(const Words& words) {
    const int fd = findMade(words.at(1));
    for (int i = std::stoi(words.at(2)); i-- > 0;) {
        std::vector<input_event> events;
        for (std::size_t w = 3; w < words.size(); ++w) {
            events.push_back(event(words[w]));
            events.back().value *= i % 2 == 0 ? 0 : 1;
        }
        events.push_back(input_event{});
        require(::write(fd, events.data(), events.size() * sizeof(input_event)) > 0, "write");
    }
    return "";
}

std::string drop(const Words& words) {
    ::close(findMade(words.at(1)));
    made.erase(words.at(1));
    return "";
}

std::string write(const Words& words) {
    send(find(words.at(1)).fd, words, 2);
    return "";
}

std::string names(const Words& /*words*/) {
    std::string all;
    for (const int number : nodeNumbers()) {
        const int fd = ::open(("/dev/input/event" + std::to_string(number)).c_str(),
                              O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        if (fd < 0)
            continue;
        all += (all.empty() ? "" : "|") + nameOf(fd);
        ::close(fd);
    }
    return all;
}

void addTo(std::vector<pollfd>& polled) {
    for (const auto& [label, node] : watched)
        polled.push_back({node.fd, POLLIN, 0});
    for (const auto& [label, fd] : made)
        polled.push_back({fd, POLLIN, 0});
}

void handle(const pollfd& polled) {
    for (auto& [label, node] : watched) {
        if (node.fd != polled.fd)
            continue;
        if (!read(label, node)) {
            ::close(node.fd);
            watched.erase(label);
        }
        return;
    }
    for (const auto& [label, fd] : made) {
        input_event light{};
        if (fd == polled.fd && ::read(fd, &light, sizeof light) > 0 && light.type == EV_LED)
            say("@" + label + textOf(light));
    }
}

} // namespace vm::nodes
