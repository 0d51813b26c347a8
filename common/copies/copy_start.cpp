#include "copies/copy_start.h"

#include "copies/exchange.h"
#include "copies/trial.h"

namespace tamsel {

namespace {

const std::string program = "/bin/tamsel";

/// The folder that a folder is in.
std::string above(const std::string& folder) {
    return folder.substr(0, folder.rfind('/'));
}

/// The copy beside which a staging folder stands; empty when it is none.
std::string placeBeside(const std::string& staging) {
    const auto name = staging.rfind('/') + 1;
    const auto end = staging.rfind(".update-");
    if (end == std::string::npos || end <= name + 1 || staging[name] != '.')
        return {};
    return staging.substr(0, name) + staging.substr(name + 1, end - name - 1);
}

} // namespace

CopyStart::CopyStart(std::string copy) : m_copy(std::move(copy)) {
    settleFromStaging();
    for (const std::string& folder : foldersWithPrefix(stagingPrefix(m_copy))) {
        if (!m_takenBack && !m_onTrial)
            settle(folder);
    }
}

void CopyStart::settle(const std::string& folder) {
    // As long as the relauncher lives, it is the one to judge.
    auto staging = OwnFolder::open(folder, OwnFolder::Lock::exclusive);
    const auto trial = staging ? trialOf(*staging, m_copy) : std::nullopt;
    if (!trial)
        return;
    if (trial->hasBegun)
        takeBack(*staging, m_copy);
    else if (beginTrial(*staging))
        m_onTrial = std::move(*staging);
}

void CopyStart::settleFromStaging() {
    const std::string folder = above(above(m_copy));
    const std::string place = placeBeside(folder);
    if (place.empty())
        return;
    const auto staging = OwnFolder::open(folder, OwnFolder::Lock::exclusive);
    const auto trial = staging ? trialOf(*staging, place) : std::nullopt;
    if (trial && trial->tree == m_copy)
        takeBack(*staging, place);
}

void CopyStart::takeBack(const OwnFolder& staging, const std::string& place) {
    const auto trial = trialOf(staging, place);
    if (!exchangeCopies(place, trial->tree))
        return;
    m_takenBack = TakenBack{place + program, trial->version};
    static_cast<void>(staging.remove());
}

void CopyStart::works() {
    if (m_onTrial)
        endTrial(*m_onTrial);
    m_onTrial.reset();
    for (const std::string& folder : foldersWithPrefix(stagingPrefix(m_copy))) {
        // Beside the relauncher, which waits for the word that follows.
        const auto staging = OwnFolder::open(folder, OwnFolder::Lock::shared);
        if (staging && trialOf(*staging, m_copy))
            endTrial(*staging);
    }
}

void CopyStart::clearLeftovers(const std::string& copy) {
    for (const std::string& folder : foldersWithPrefix(stagingPrefix(copy))) {
        const auto staging = OwnFolder::open(folder, OwnFolder::Lock::exclusive);
        if (staging && !trialOf(*staging, copy))
            static_cast<void>(staging->remove());
    }
}

} // namespace tamsel
