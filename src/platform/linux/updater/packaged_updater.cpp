#include "platform/linux/updater/packaged_updater.h"

namespace tamsel {

namespace {

class PackagedUpdater final : public SPUUpdater {
public:
    void setAutomaticallyChecksForUpdates(bool /*automatically*/) override {}
    Result<void> startUpdater() override { return {}; }
    bool sessionInProgress() const override { return false; }
    bool canCheckForUpdates() const override { return false; }
    void checkForUpdates() override {}
    void checkForUpdatesInBackground() override {}
};

} // namespace

std::unique_ptr<SPUUpdater> PackagedUpdaterMaker::makeUpdater(SPUUserDriver& /*driver*/,
                                                              SPUUpdaterDelegate& /*delegate*/) {
    return std::make_unique<PackagedUpdater>();
}

} // namespace tamsel
