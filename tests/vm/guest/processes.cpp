#include "processes.h"

#include <array>
#include <cstdio>
#include <map>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vm::processes {

namespace {
std::map<pid_t, std::string> running;
} // namespace

std::string start(const Words& words) {
    std::vector<char*> arguments;
    for (std::size_t i = 2; i < words.size(); ++i)
        arguments.push_back(const_cast<char*>(words[i].c_str()));
    arguments.push_back(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        sigset_t none;
        ::sigemptyset(&none);
        ::sigprocmask(SIG_SETMASK, &none, nullptr);
        ::execv(arguments[0], arguments.data());
        ::_exit(127);
    }
    running[child] = words.at(1);
    return std::to_string(child);
}

std::string signal(const Words& words) {
    for (const auto& [pid, label] : running) {
        if (label == words.at(1))
            require(::kill(pid, std::stoi(words.at(2))) == 0, "kill");
    }
    return "";
}

std::string shell(const Words& words) {
    std::string command = "exec 2>&1; ";
    for (std::size_t i = 1; i < words.size(); ++i)
        command += words[i] + " ";
    FILE* const output = ::popen(command.c_str(), "r");
    require(output != nullptr, "popen");
    std::string text;
    std::array<char, 4096> buffer{};
    while (const std::size_t count = ::fread(buffer.data(), 1, buffer.size(), output))
        text.append(buffer.data(), count);
    ::pclose(output);
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    for (char& c : text)
        c = c == '\n' ? '|' : c;
    return text;
}

void reap() {
    for (auto it = running.begin(); it != running.end();) {
        int status = 0;
        if (::waitpid(it->first, &status, WNOHANG) != it->first) {
            ++it;
            continue;
        }
        say("@" + it->second + " exit " +
            (WIFEXITED(status) ? std::to_string(WEXITSTATUS(status))
                               : "signal " + std::to_string(WTERMSIG(status))));
        it = running.erase(it);
    }
}

} // namespace vm::processes
