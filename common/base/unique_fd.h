#pragma once

#include <utility>

namespace tamsel {

/// Owns one file descriptor and closes it.
class UniqueFd final {
public:
    UniqueFd() = default;
    explicit UniqueFd(int fd) : m_fd(fd) {}
    UniqueFd(UniqueFd&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept;
    ~UniqueFd();

    int get() const { return m_fd; }
    bool isOpen() const { return m_fd >= 0; }
    /// The caller owns the descriptor from now on.
    int release() { return std::exchange(m_fd, -1); }

private:
    int m_fd = -1;
};

} // namespace tamsel
