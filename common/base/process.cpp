#include "base/process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace tamsel {

namespace {

std::string reason(int error) {
    return std::generic_category().message(error);
}

/// The strings' addresses as exec wants them; it writes to none of them.
std::vector<char*> pointers(const std::vector<std::string>& strings) {
    std::vector<char*> out;
    out.reserve(strings.size() + 1);
    for (const std::string& string : strings)
        out.push_back(const_cast<char*>(string.c_str()));
    out.push_back(nullptr);
    return out;
}

/// What the system is asked to do on the child's side; the first failure is kept.
class Preparation {
public:
    Preparation() {
        keep(::posix_spawn_file_actions_init(&m_files));
        keep(::posix_spawnattr_init(&m_attributes));
    }
    Preparation(const Preparation&) = delete;
    Preparation& operator=(const Preparation&) = delete;
    ~Preparation() {
        ::posix_spawnattr_destroy(&m_attributes);
        ::posix_spawn_file_actions_destroy(&m_files);
    }

    /// The given ones first, so that no source has been replaced by then.
    void descriptors(const std::vector<ChildDescriptor>& given) {
        std::array<bool, STDERR_FILENO + 1> isSet{};
        int last = STDERR_FILENO;
        for (const auto& [number, source] : given) {
            last = std::max(last, number);
            const bool isStandard = number <= STDERR_FILENO;
            if (isStandard && ::fcntl(source, F_GETFD) < 0)
                continue;
            keep(::posix_spawn_file_actions_adddup2(&m_files, source, number));
            if (isStandard)
                isSet[static_cast<std::size_t>(number)] = true;
        }
        for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number) {
            const int mode = number == STDIN_FILENO ? O_RDONLY : O_WRONLY;
            if (!isSet[static_cast<std::size_t>(number)])
                keep(::posix_spawn_file_actions_addopen(&m_files, number, "/dev/null", mode, 0));
        }
        // Also what whoever started this process has left open.
        keep(::posix_spawn_file_actions_addclosefrom_np(&m_files, last + 1));
    }

    void signalsAndSession(ChildProgram::Session session) {
        sigset_t signals;
        ::sigemptyset(&signals);
        keep(::posix_spawnattr_setsigmask(&m_attributes, &signals));
        ::sigfillset(&signals);
        keep(::posix_spawnattr_setsigdefault(&m_attributes, &signals));
        const int own = session == ChildProgram::Session::own ? POSIX_SPAWN_SETSID : 0;
        keep(::posix_spawnattr_setflags(
            &m_attributes,
            static_cast<short>(POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | own)));
    }

    Result<pid_t> start(const std::vector<std::string>& words, char* const* environment) {
        pid_t pid = -1;
        if (m_error == 0)
            m_error = ::posix_spawnp(&pid, words.front().c_str(), &m_files, &m_attributes,
                                     pointers(words).data(), environment);
        if (m_error != 0)
            return fail(reason(m_error), words.front());
        return pid;
    }

private:
    void keep(int error) { m_error = m_error != 0 ? m_error : error; }

    posix_spawn_file_actions_t m_files{};
    posix_spawnattr_t m_attributes{};
    int m_error = 0;
};

} // namespace

Result<pid_t> spawn(const ChildProgram& child) {
    std::vector<std::string> words{child.program};
    words.insert(words.end(), child.arguments.begin(), child.arguments.end());
    Preparation preparation;
    preparation.descriptors(child.descriptors);
    preparation.signalsAndSession(child.session);
    return preparation.start(words,
                             child.environment ? pointers(*child.environment).data() : environ);
}

int reap(pid_t child) {
    int status = 0;
    pid_t ended = 0;
    do {
        ended = ::waitpid(child, &status, 0);
    } while (ended < 0 && errno == EINTR);
    if (ended != child)
        return -1;
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

UniqueFd openProcess(pid_t process) {
    return UniqueFd(process > 0 ? static_cast<int>(::syscall(SYS_pidfd_open, process, 0)) : -1);
}

bool hasEndedWithin(const UniqueFd& process, std::chrono::milliseconds limit) {
    pollfd wanted{process.get(), POLLIN, 0};
    int ready = 0;
    do {
        ready = ::poll(&wanted, 1, static_cast<int>(limit.count()));
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

Result<Pipe> Pipe::make() {
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return fail(reason(errno));
    return Pipe{UniqueFd(ends[0]), UniqueFd(ends[1])};
}

} // namespace tamsel
