#pragma once

#include "platform/software_updater.h"

namespace tamsel {

class MainQueue;

/// The updater of a copy that cannot replace itself: every check ends with an error that says so.
class PackagedUpdaterMaker final : public UpdaterMaker {
public:
    explicit PackagedUpdaterMaker(MainQueue& queue) : m_queue(queue) {}

    std::unique_ptr<SPUUpdater> makeUpdater(SPUUserDriver& driver,
                                            SPUUpdaterDelegate& delegate) override;

private:
    MainQueue& m_queue;
};

} // namespace tamsel
