#include "platform/linux/updater/program_start.h"

#include "platform/background_queue.h"

#include <array>
#include <climits>
#include <unistd.h>
#include <vector>

namespace tamsel {

namespace {

/// The folder that holds `bin`, of the program that runs.
std::string folderOfThisCopy() {
    std::array<char, PATH_MAX> path{};
    const auto size = ::readlink("/proc/self/exe", path.data(), path.size());
    std::string folder(path.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
    for (int up = 0; up < 2 && !folder.empty(); ++up)
        folder.erase(folder.rfind('/') == std::string::npos ? 0 : folder.rfind('/'));
    return folder;
}

void become(const CopyStart::TakenBack& copy, int argc, char** argv) {
    std::vector<std::string> words{copy.program};
    words.insert(words.end(), argv + 1, argv + argc);
    words.insert(words.end(), {"--update-failed", copy.version});
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    ::execv(copy.program.c_str(), arguments.data());
}

} // namespace

ProgramStart::ProgramStart(int& argc, char** argv)
    : m_folder(folderOfThisCopy()),
      m_order(RelaunchOrder::takeFrom(argc, argv)),
      m_start(m_folder) {
    if (m_start.takenBack())
        become(*m_start.takenBack(), argc, argv);
}

void ProgramStart::expect(BackgroundQueue& background, const QString& version) {
    m_background = &background;
    m_version = version;
}

void ProgramStart::frameShown() {
    m_hasFrame = true;
    counts();
}

void ProgramStart::daemonCalled() {
    m_hasCalled = true;
    counts();
}

void ProgramStart::counts() {
    if (!m_hasFrame || !m_hasCalled || !m_background)
        return;
    m_start.works();
    m_order.report(m_version);
    // When the relauncher is gone, the copy before this one is nobody's.
    m_background->run([folder = m_folder] { CopyStart::clearLeftovers(folder); });
    m_background = nullptr;
}

} // namespace tamsel
