#include "agent/command_runner.h"

#include "protocol/daemon_protocol.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tamsel {

namespace {

/// How a command starts; prepared anew for each, as it costs next to nothing beside the fork.
class Spawning final {
public:
    Spawning() {
        sigset_t signals;
        ::posix_spawn_file_actions_init(&m_files);
        ::posix_spawnattr_init(&m_attributes);
        ::sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&m_attributes, &signals);
        ::sigfillset(&signals);
        ::posix_spawnattr_setsigdefault(&m_attributes, &signals);
        m_error = ::posix_spawnattr_setflags(
            &m_attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        keepError(
            ::posix_spawn_file_actions_addopen(&m_files, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
        keepError(
            ::posix_spawn_file_actions_addopen(&m_files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0));
        keepError(::posix_spawn_file_actions_adddup2(&m_files, STDOUT_FILENO, STDERR_FILENO));
        // What whoever started the agent left open, too.
        keepError(::posix_spawn_file_actions_addclosefrom_np(&m_files, STDERR_FILENO + 1));
    }
    Spawning(const Spawning&) = delete;
    Spawning& operator=(const Spawning&) = delete;
    ~Spawning() {
        ::posix_spawnattr_destroy(&m_attributes);
        ::posix_spawn_file_actions_destroy(&m_files);
    }

    std::optional<pid_t> shell(std::string command) const {
        std::array<char, 3> name{"sh"};
        std::array<char, 3> option{"-c"};
        std::array<char, 3> noMoreOptions{"--"};
        const std::array<char*, 5> words{name.data(), option.data(), noMoreOptions.data(),
                                         command.data(), nullptr};
        pid_t pid = 0;
        if (m_error != 0 ||
            ::posix_spawn(&pid, "/bin/sh", &m_files, &m_attributes, words.data(), environ) != 0)
            return std::nullopt;
        return pid;
    }

private:
    void keepError(int error) { m_error = m_error != 0 ? m_error : error; }

    posix_spawn_file_actions_t m_files{};
    posix_spawnattr_t m_attributes{};
    int m_error = 0;
};

} // namespace

CommandRunner::~CommandRunner() {
    for (sd_event_source* const source : m_running)
        ::sd_event_source_disable_unref(source);
}

bool CommandRunner::run(const std::string& command) {
    if (command.empty() || command.size() > protocol::maxCommandSize ||
        command.find('\0') != std::string::npos || m_running.size() >= maxRunning)
        return false;
    const std::optional<pid_t> pid = Spawning().shell(command);
    if (!pid)
        return false;
    sd_event_source* source = nullptr;
    if (::sd_event_add_child(m_loop, &source, *pid, WEXITED, onExit, this) < 0) {
        // It could never be reaped.
        ::kill(-*pid, SIGKILL);
        while (::waitpid(*pid, nullptr, 0) < 0 && errno == EINTR) {
        }
        return false;
    }
    m_running.insert(source);
    return true;
}

int CommandRunner::onExit(sd_event_source* source, const siginfo_t* /*info*/, void* self) {
    // The loop reaps the process once this has returned.
    static_cast<CommandRunner*>(self)->m_running.erase(source);
    ::sd_event_source_unref(source);
    return 0;
}

} // namespace tamsel
