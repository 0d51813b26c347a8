#include "update/quorel_user_driver.h"

#include "platform/system_log.h"

#include <utility>

namespace tamsel {

namespace {

template <class Callback, class... Arguments>
void report(const Callback& callback, const Arguments&... arguments) {
    if (callback)
        callback(arguments...);
}

/// Drops the question before it is answered: the answer may bring the next one.
void answer(SPUUserDriver::ChoiceReply& reply, SPUUserUpdateChoice choice) {
    if (const auto pending = std::exchange(reply, nullptr))
        pending(choice);
}

} // namespace

void QuorelUserDriver::startDownload() {
    log(QStringLiteral("[Quorel] 開始下載"));
    answer(m_downloadReply, SPUUserUpdateChoice::install);
}

void QuorelUserDriver::installAndRelaunch() {
    log(QStringLiteral("[Quorel] 安裝並重啟"));
    answer(m_installReply, SPUUserUpdateChoice::install);
}

void QuorelUserDriver::declineDownload(SPUUserUpdateChoice choice) {
    answer(m_downloadReply, choice);
}

void QuorelUserDriver::showUpdatePermissionRequest(
    const std::function<void(SUUpdatePermissionResponse)>& reply) {
    log(QStringLiteral("[Quorel] 收到權限請求"));
    reply({.automaticUpdateChecks = false, .sendSystemProfile = false});
}

void QuorelUserDriver::showUserInitiatedUpdateCheck() {
    log(QStringLiteral("[Quorel] 用戶發起檢查"));
}

void QuorelUserDriver::showUpdateFound(const AppcastItem& item, ChoiceReply reply) {
    log(QStringLiteral("[Quorel] 發現更新: ") + item.displayVersionString);
    m_downloadReply = std::move(reply);
    if (std::exchange(m_autoStartDownload, false)) {
        log(QStringLiteral("[Quorel] 自動開始下載"));
        answer(m_downloadReply, SPUUserUpdateChoice::install);
    } else {
        report(onUpdateFound, item.displayVersionString, item.versionString);
    }
}

void QuorelUserDriver::showUpdateNotFound(const UpdaterError& /*error*/,
                                          const Acknowledgement& acknowledgement) {
    m_log.write(SystemLogType::debug, QStringLiteral("[Quorel] showUpdateNotFoundWithError"));
    report(onUpToDate);
    acknowledgement();
}

void QuorelUserDriver::showUpdaterError(const UpdaterError& error,
                                        const Acknowledgement& acknowledgement) {
    m_log.write(SystemLogType::error,
                QStringLiteral("[Quorel] 錯誤: ") + error.localizedDescription);
    report(onErr, error.localizedDescription);
    acknowledgement();
}

void QuorelUserDriver::showDownloadInitiated() {
    log(QStringLiteral("[Quorel] 下載開始"));
    m_downloadedLength = 0;
    report(onDownloadProgress, 0.0);
}

void QuorelUserDriver::showDownloadDidReceiveExpectedContentLength(std::uint64_t length) {
    log(QStringLiteral("[Quorel] 預期大小: %1 bytes").arg(length));
    m_expectedContentLength = length;
}

void QuorelUserDriver::showDownloadDidReceiveDataOfLength(std::uint64_t length) {
    m_downloadedLength += length;
    if (m_expectedContentLength != 0)
        report(onDownloadProgress, static_cast<double>(m_downloadedLength) /
                                       static_cast<double>(m_expectedContentLength));
}

void QuorelUserDriver::showDownloadDidStartExtractingUpdate() {
    log(QStringLiteral("[Quorel] 開始解壓"));
}

void QuorelUserDriver::showReadyToInstallAndRelaunch(ChoiceReply reply) {
    log(QStringLiteral("[Quorel] 準備安裝"));
    m_installReply = std::move(reply);
    report(onReadyToInstall);
}

void QuorelUserDriver::showInstallingUpdate() {
    log(QStringLiteral("[Quorel] 正在安裝..."));
}

void QuorelUserDriver::showUpdateInstalledAndRelaunched(const Acknowledgement& acknowledgement) {
    log(QStringLiteral("[Quorel] 安裝完成"));
    acknowledgement();
}

void QuorelUserDriver::dismissUpdateInstallation() {
    m_downloadReply = nullptr;
    m_installReply = nullptr;
}

void QuorelUserDriver::log(const QString& line) {
    m_log.write(SystemLogType::standard, line);
}

} // namespace tamsel
