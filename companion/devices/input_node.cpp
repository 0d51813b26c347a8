#include "devices/input_node.h"

#include <array>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <linux/input.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tamsel {

namespace {

constexpr int firstNodeDescriptor = 100;

UniqueFd openDescriptor(const std::string& path) {
    constexpr int flags = O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    int fd = ::open(path.c_str(), O_RDWR | flags);
    if (fd < 0 && (errno == EACCES || errno == EPERM || errno == EROFS))
        fd = ::open(path.c_str(), O_RDONLY | flags);
    if (fd < 0)
        return {};
    const int above = ::fcntl(fd, F_DUPFD_CLOEXEC, firstNodeDescriptor);
    if (above < 0)
        return UniqueFd(fd);
    ::close(fd);
    return UniqueFd(above);
}

void send(int fd, std::uint16_t type, std::uint16_t code, std::int32_t value) {
    std::array<input_event, 2> events{};
    events[0].type = type;
    events[0].code = code;
    events[0].value = value;
    // A light that cannot be switched is not worth a word.
    [[maybe_unused]] const auto written = ::write(fd, events.data(), sizeof events);
}

} // namespace

tl::expected<InputNode, int> InputNode::open(const std::string& path) {
    UniqueFd fd = openDescriptor(path);
    struct stat info {};
    if (!fd.isOpen() || ::fstat(fd.get(), &info) != 0)
        return tl::unexpected(errno);
    if (!S_ISCHR(info.st_mode))
        return tl::unexpected(ENOTTY);
    int clock = CLOCK_MONOTONIC;
    ::ioctl(fd.get(), EVIOCSCLOCKID, &clock);
    libevdev* device = nullptr;
    if (const int result = ::libevdev_new_from_fd(fd.get(), &device); result < 0)
        return tl::unexpected(-result);
    return InputNode(std::move(fd), device);
}

int InputNode::next(input_event& event) {
    for (;;) {
        const auto flag = m_isCatchingUp ? LIBEVDEV_READ_FLAG_SYNC : LIBEVDEV_READ_FLAG_NORMAL;
        const int result = ::libevdev_next_event(m_device.get(), flag, &event);
        if (result == LIBEVDEV_READ_STATUS_SYNC) {
            if (!m_isCatchingUp) { // the word that events were dropped
                m_isCatchingUp = true;
                continue;
            }
            return 0;
        }
        if (result == LIBEVDEV_READ_STATUS_SUCCESS)
            return 0;
        if (result == -EAGAIN && m_isCatchingUp) {
            m_isCatchingUp = false;
            continue;
        }
        return result;
    }
}

std::vector<std::uint16_t> InputNode::keysDown() const {
    std::array<unsigned char, KEY_CNT / 8> bits{};
    ::ioctl(m_fd.get(), EVIOCGKEY(bits.size()), bits.data());
    std::vector<std::uint16_t> codes;
    for (std::uint16_t code = 0; code < KEY_CNT; ++code) {
        if ((bits[code / 8U] >> (code % 8U) & 1U) != 0)
            codes.push_back(code);
    }
    return codes;
}

void InputNode::pretendUp(const std::vector<std::uint16_t>& codes) {
    for (const std::uint16_t code : codes)
        send(m_fd.get(), EV_KEY, code, 0);
}

int InputNode::grab() {
    return ::ioctl(m_fd.get(), EVIOCGRAB, 1) == 0 ? 0 : errno;
}

void InputNode::setLight(std::uint16_t code, std::int32_t value) {
    if (has(EV_LED, code))
        send(m_fd.get(), EV_LED, code, value);
}

} // namespace tamsel
