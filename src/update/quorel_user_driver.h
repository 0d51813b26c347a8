#pragma once

#include "platform/software_updater.h"

namespace tamsel {

class SystemLog;

/// What the updater talks to in place of windows: keeps its two questions until the facade answers
/// them, adds up the download, and reports by five callbacks. Main thread.
class QuorelUserDriver final : public SPUUserDriver {
public:
    explicit QuorelUserDriver(SystemLog& log) : m_log(log) {}

    std::function<void(const QString& message)> onErr;
    std::function<void()> onUpToDate;
    std::function<void(const QString& version, const QString& build)> onUpdateFound;
    std::function<void(double fraction)> onDownloadProgress;
    std::function<void()> onReadyToInstall;

    bool hasDownloadReply() const { return bool(m_downloadReply); }
    bool hasInstallReply() const { return bool(m_installReply); }
    /// The next update that is found is downloaded at once.
    void setAutoStartDownload(bool start) { m_autoStartDownload = start; }
    bool autoStartDownload() const { return m_autoStartDownload; }

    /// Each answers its question, if it is open, and drops it.
    void startDownload();
    void installAndRelaunch();
    void declineDownload(SPUUserUpdateChoice choice);

    void showUpdatePermissionRequest(
        const std::function<void(SUUpdatePermissionResponse)>& reply) override;
    void showUserInitiatedUpdateCheck() override;
    void showUpdateFound(const AppcastItem& item, ChoiceReply reply) override;
    void showUpdateNotFound(const UpdaterError& error,
                            const Acknowledgement& acknowledgement) override;
    void showUpdaterError(const UpdaterError& error,
                          const Acknowledgement& acknowledgement) override;
    void showDownloadInitiated() override;
    void showDownloadDidReceiveExpectedContentLength(std::uint64_t length) override;
    void showDownloadDidReceiveDataOfLength(std::uint64_t length) override;
    void showDownloadDidStartExtractingUpdate() override;
    void showReadyToInstallAndRelaunch(ChoiceReply reply) override;
    void showInstallingUpdate() override;
    void showUpdateInstalledAndRelaunched(const Acknowledgement& acknowledgement) override;
    void dismissUpdateInstallation() override;

private:
    void log(const QString& line);

    SystemLog& m_log;
    ChoiceReply m_downloadReply;
    ChoiceReply m_installReply;
    bool m_autoStartDownload = false;
    std::uint64_t m_expectedContentLength = 0;
    std::uint64_t m_downloadedLength = 0;
};

} // namespace tamsel
