#pragma once

#include "platform/linux/updater/relaunch.h"
#include "platform/linux/updater/update_session.h"

#include <utility>

namespace tamsel {

/// The updater of a copy with a feed of its own ("QLFeedURL") and its maker's key ("QLPublicKey").
/// Starting it fails without a key that is fit for use; checks then end with that error. A copy
/// that the relauncher has started is told so one turn of the main loop after the start.
class FeedUpdaterMaker final : public UpdaterMaker {
public:
    FeedUpdaterMaker(UpdateParts parts, RelaunchOrder order)
        : m_parts(std::move(parts)), m_order(std::move(order)) {}

    std::unique_ptr<SPUUpdater> makeUpdater(SPUUserDriver& driver,
                                            SPUUpdaterDelegate& delegate) override;

private:
    UpdateParts m_parts;
    RelaunchOrder m_order;
};

} // namespace tamsel
