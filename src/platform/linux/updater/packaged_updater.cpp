#include "platform/linux/updater/packaged_updater.h"

#include "platform/main_queue.h"

#include <QCoreApplication>
#include <QObject>

namespace tamsel {

namespace {

class PackagedUpdater final : public QObject, public SPUUpdater {
public:
    PackagedUpdater(MainQueue& queue, SPUUpdaterDelegate& delegate)
        : m_queue(queue), m_delegate(delegate) {}

    void setAutomaticallyChecksForUpdates(bool /*automatically*/) override {}
    Result<void> startUpdater() override { return {}; }
    bool sessionInProgress() const override { return m_isInSession; }
    bool canCheckForUpdates() const override { return true; }
    void checkForUpdates() override { refuse(); }
    void checkForUpdatesInBackground() override { refuse(); }

private:
    void refuse() {
        m_isInSession = true;
        m_queue.async(this, [this] {
            const UpdaterError error{
                updaterErrorDomain.toString(), 1,
                QCoreApplication::translate(
                    "PackagedUpdater", "This copy is updated by your system's package manager.")};
            m_isInSession = false;
            m_delegate.didAbortWithError(error);
            m_delegate.didFinishUpdateCycle(error);
        });
    }

    MainQueue& m_queue;
    SPUUpdaterDelegate& m_delegate;
    bool m_isInSession = false;
};

} // namespace

std::unique_ptr<SPUUpdater> PackagedUpdaterMaker::makeUpdater(SPUUserDriver& /*driver*/,
                                                              SPUUpdaterDelegate& delegate) {
    return std::make_unique<PackagedUpdater>(m_queue, delegate);
}

} // namespace tamsel
