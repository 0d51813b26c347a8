// Stands in for the agent: holds its lock, with its process id inside, until it is ended.

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

int main() {
    const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
    const std::string folder = std::string(runtime ? runtime : "/nowhere") + "/tamsel";
    ::mkdir(folder.c_str(), 0700);
    const int file = ::open((folder + "/agent.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (file < 0 || ::flock(file, LOCK_EX | LOCK_NB) != 0 || ::ftruncate(file, 0) != 0 ||
        ::dprintf(file, "%d\n", ::getpid()) < 0)
        return 1;
    for (;;)
        ::pause();
}
