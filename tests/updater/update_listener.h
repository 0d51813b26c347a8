#pragma once

#include "platform/software_updater.h"

#include <QStringList>

#include <utility>

namespace tamsel {

/// Writes down what it is told, and answers the two questions as it was told to.
class Listener final : public SPUUserDriver, public SPUUpdaterDelegate {
public:
    QStringList heard;
    QString error;
    QString feed;
    SPUUserUpdateChoice download = SPUUserUpdateChoice::install;
    SPUUserUpdateChoice install = SPUUserUpdateChoice::install;
    std::function<void(const ChoiceReply&)> askedToInstall; ///< in place of `install`
    std::uint64_t expected = 0;
    std::uint64_t received = 0;

    QStringList take() { return std::exchange(heard, {}); }

    std::optional<QString> feedURLString() override { return feed; }
    void didFindValidUpdate(const AppcastItem& item) override {
        heard << "found " + item.displayVersionString + " " + item.versionString;
    }
    void didNotFindUpdate() override { heard << "not found"; }
    void didAbortWithError(const UpdaterError& e) override {
        heard << QString("abort %1").arg(e.code);
        error = e.localizedDescription;
    }
    void didFinishUpdateCycle(const std::optional<UpdaterError>& e) override {
        heard << QString("end %1").arg(e ? e->code : 0);
    }
    void showUpdatePermissionRequest(
        const std::function<void(SUUpdatePermissionResponse)>& /*reply*/) override {}
    void showUserInitiatedUpdateCheck() override { heard << "checking"; }
    void showUpdateFound(const AppcastItem& /*item*/, ChoiceReply reply) override {
        heard << "question";
        reply(download);
    }
    void showUpdateNotFound(const UpdaterError& /*error*/,
                            const Acknowledgement& acknowledge) override {
        heard << "show none";
        acknowledge();
    }
    void showUpdaterError(const UpdaterError& e, const Acknowledgement& acknowledge) override {
        heard << "show error";
        error = e.localizedDescription;
        acknowledge();
    }
    void showDownloadInitiated() override { heard << "download"; }
    void showDownloadDidReceiveExpectedContentLength(std::uint64_t length) override {
        expected = length;
        received = 0;
    }
    void showDownloadDidReceiveDataOfLength(std::uint64_t length) override { received += length; }
    void showDownloadDidStartExtractingUpdate() override { heard << "unpack"; }
    void showReadyToInstallAndRelaunch(ChoiceReply reply) override {
        heard << "ready";
        if (askedToInstall)
            askedToInstall(reply);
        else
            reply(install);
    }
    void showInstallingUpdate() override { heard << "install"; }
    void showUpdateInstalledAndRelaunched(const Acknowledgement& acknowledge) override {
        heard << "installed";
        acknowledge();
    }
    void dismissUpdateInstallation() override { heard << "dismiss"; }
};

} // namespace tamsel
