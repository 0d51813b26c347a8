#include "platform/linux/updater/feed_updater.h"

#include "copies/copy_start.h"
#include "platform/background_queue.h"
#include "platform/bundle.h"
#include "platform/linux/updater/update_texts.h"
#include "platform/user_defaults.h"

#include <QFileInfo>

#include <utility>

namespace tamsel {

namespace {

class FeedUpdater final : public QObject, public SPUUpdater {
public:
    FeedUpdater(UpdateParts parts, RelaunchOrder order, SPUUserDriver& driver,
                SPUUpdaterDelegate& delegate)
        : m_parts(std::move(parts)),
          m_order(std::move(order)),
          m_driver(driver),
          m_delegate(delegate) {}

    /// It never checks by itself.
    void setAutomaticallyChecksForUpdates(bool /*automatically*/) override {}
    Result<void> startUpdater() override;
    bool sessionInProgress() const override { return m_session || m_isRefusing; }
    bool canCheckForUpdates() const override { return !sessionInProgress(); }
    void checkForUpdates() override { check(UpdateSession::AskedBy::user); }
    void checkForUpdatesInBackground() override { check(UpdateSession::AskedBy::schedule); }

private:
    void check(UpdateSession::AskedBy askedBy);
    void sessionEnded();
    /// What has to outlive this process, should nobody read it now.
    void rememberRelaunch();
    void tellOfRelaunch();
    /// An error that has no session.
    void refuse(const UpdaterError& error);

    UpdateParts m_parts;
    RelaunchOrder m_order;
    BundleKeys m_keys;
    SPUUserDriver& m_driver;
    SPUUpdaterDelegate& m_delegate;
    std::optional<UpdaterError> m_startError;
    bool m_isRefusing = false;
    std::unique_ptr<UpdateSession> m_session;
};

Result<void> FeedUpdater::startUpdater() {
    rememberRelaunch();
    m_parts.queue.async(this, [this] { tellOfRelaunch(); });
    const QFileInfo folder(m_parts.programFolder + QStringLiteral("/.."));
    m_parts.background.run([copy = QFile::encodeName(folder.canonicalFilePath()).toStdString()] {
        CopyStart::clearLeftovers(copy);
    });
    const auto keys = BundleKeys::of(m_parts.bundle);
    if (!keys) {
        m_startError = update_texts::notSetUp(QString::fromStdString(keys.error().what));
        return tl::unexpected(keys.error());
    }
    m_keys = *keys;
    return {};
}

void FeedUpdater::check(UpdateSession::AskedBy askedBy) {
    if (sessionInProgress())
        return;
    if (m_startError) {
        refuse(*m_startError);
        return;
    }
    m_session = std::make_unique<UpdateSession>(m_parts, m_keys, askedBy, m_driver, m_delegate,
                                                [this] { sessionEnded(); });
    m_session->start();
}

void FeedUpdater::sessionEnded() {
    // The session is on the stack.
    if (m_session)
        m_session.release()->deleteLater();
}

void FeedUpdater::rememberRelaunch() {
    if (m_order.failedVersion.isEmpty() && !m_order.reportTo)
        return;
    QString toTell;
    if (!m_order.failedVersion.isEmpty()) {
        UpdateSession::skip(m_order.failedVersion, m_parts.defaults);
        toTell = update_texts::didNotStart(m_order.failedVersion).localizedDescription;
    }
    static_cast<void>(m_parts.defaults.setString(toTell, failedUpdateKey));
}

void FeedUpdater::tellOfRelaunch() {
    if (m_order.reportTo)
        m_driver.showUpdateInstalledAndRelaunched([] {});
    if (!m_order.failedVersion.isEmpty())
        refuse(update_texts::didNotStart(m_order.failedVersion));
}

void FeedUpdater::refuse(const UpdaterError& error) {
    m_isRefusing = true;
    m_parts.queue.async(this, [this, error] {
        m_driver.showUpdaterError(error, [] {});
        m_isRefusing = false;
        m_delegate.didAbortWithError(error);
        m_delegate.didFinishUpdateCycle(error);
    });
}

} // namespace

std::unique_ptr<SPUUpdater> FeedUpdaterMaker::makeUpdater(SPUUserDriver& driver,
                                                          SPUUpdaterDelegate& delegate) {
    return std::make_unique<FeedUpdater>(m_parts, m_order, driver, delegate);
}

} // namespace tamsel
