#pragma once

#include "platform/software_updater.h"

namespace tamsel {

/// The updater of a copy that cannot replace itself: it has no feed, and never checks.
class PackagedUpdaterMaker final : public UpdaterMaker {
public:
    std::unique_ptr<SPUUpdater> makeUpdater(SPUUserDriver& driver,
                                            SPUUpdaterDelegate& delegate) override;
};

} // namespace tamsel
