#include "base/unique_fd.h"

#include <unistd.h>

namespace tamsel {

UniqueFd& UniqueFd::operator=(UniqueFd&& other) noexcept {
    if (this != &other) {
        if (m_fd >= 0)
            ::close(m_fd);
        m_fd = std::exchange(other.m_fd, -1);
    }
    return *this;
}

UniqueFd::~UniqueFd() {
    if (m_fd >= 0)
        ::close(m_fd);
}

} // namespace tamsel
