#pragma once

#include "platform/software_updater.h"

#include <QStringList>

namespace tamsel {

/// An updater whose part the test plays, by the driver and the delegate that it was made with.
class FakeUpdater final : public UpdaterMaker {
public:
    bool isInSession = false;
    bool canCheck = true;
    bool automatic = true;
    Result<void> startResult;
    QStringList calls;
    SPUUserDriver* driver = nullptr;
    SPUUpdaterDelegate* delegate = nullptr;

    std::unique_ptr<SPUUpdater> makeUpdater(SPUUserDriver& itsDriver,
                                            SPUUpdaterDelegate& itsDelegate) override {
        driver = &itsDriver;
        delegate = &itsDelegate;
        return std::make_unique<Updater>(*this);
    }

private:
    class Updater final : public SPUUpdater {
    public:
        explicit Updater(FakeUpdater& fake) : m_fake(fake) {}
        void setAutomaticallyChecksForUpdates(bool automatically) override {
            m_fake.automatic = automatically;
        }
        Result<void> startUpdater() override { return m_fake.startResult; }
        bool sessionInProgress() const override { return m_fake.isInSession; }
        bool canCheckForUpdates() const override { return m_fake.canCheck; }
        void checkForUpdates() override { m_fake.calls << QStringLiteral("check"); }
        void checkForUpdatesInBackground() override {
            m_fake.calls << QStringLiteral("background");
        }

    private:
        FakeUpdater& m_fake;
    };
};

} // namespace tamsel
