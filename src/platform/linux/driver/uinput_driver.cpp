#include "platform/linux/driver/uinput_driver.h"

#include "platform/linux/process/child_process.h"
#include "protocol/driver_helper.h"

namespace tamsel {

namespace {

/// Exit statuses of the authorization program's own.
constexpr int promptDismissed = 126;
constexpr int notAuthorized = 127;

QString offeredVersion() {
    constexpr std::string_view version = driver::accessRuleVersion(driver::accessRuleText);
    static_assert(version != "0", "the access rule begins with its version");
    return QString::fromUtf8(version.data(), static_cast<qsizetype>(version.size()));
}

} // namespace

UinputDriver::UinputDriver(MainQueue& queue, BackgroundQueue& background, UinputPlaces places,
                           QObject* parent)
    : QObject(parent), m_queue(queue), m_background(background), m_places(std::move(places)) {}

void UinputDriver::submit(const SystemExtensionRequest& request,
                          SystemExtensionRequestDelegate& delegate) {
    m_waiting.push_back({request, &delegate});
    serveNext();
}

void UinputDriver::serveNext() {
    if (m_running || m_waiting.empty())
        return;
    m_running = std::move(m_waiting.front());
    m_waiting.pop_front();
    look();
}

void UinputDriver::look() {
    m_background.run([weak = QPointer(this), &queue = m_queue, places = m_places] {
        queue.async(nullptr, [weak, state = readUinputState(places)] {
            if (!weak)
                return;
            if (weak->m_running->request.kind == SystemExtensionRequest::Kind::activation)
                weak->activate(state);
            else
                weak->deactivate(state);
        });
    });
}

void UinputDriver::activate(const UinputState& state) {
    if (m_running->request.identifier != QLatin1String(driver::driverIdentifier))
        return fail(systemExtensionNotFound, tr("There is no such driver."));
    if (!state.isInKernel)
        return fail(systemExtensionNotFound,
                    tr("This kernel (%1) has no uinput driver, through which Tamsel posts keys. "
                       "Install your distribution's complete kernel and restart.")
                        .arg(kernelRelease()));
    const bool isOther = state.installedVersion && *state.installedVersion != offeredVersion();
    if (isOther && !m_running->isReplacing && !mayReplace(*state.installedVersion))
        return fail(systemExtensionUnknownError, tr("The installed driver was kept."));
    if (!state.hasNode) {
        if (std::exchange(m_running->isLoadTried, true))
            return fail(systemExtensionUnknownError,
                        tr("The uinput driver is loaded, but its device does not appear."));
        return runHelper(driver::loadCommand);
    }
    if (m_running->isAccessTried)
        return finish(state.hasAccess ? systemExtensionCompleted
                                      : systemExtensionWillCompleteAfterReboot);
    if (state.hasAccess && !isOther)
        return finish(systemExtensionCompleted);
    m_running->isAccessTried = true;
    runHelper(driver::grantCommand);
}

void UinputDriver::deactivate(const UinputState& state) {
    if (!state.installedVersion)
        return finish(systemExtensionCompleted);
    if (std::exchange(m_running->isAccessTried, true))
        return fail(systemExtensionUnknownError, tr("The access rule is still in place."));
    runHelper(driver::revokeCommand);
}

bool UinputDriver::mayReplace(const QString& installed) {
    const auto& delegate = m_running->delegate;
    m_running->isReplacing = delegate && delegate->actionForReplacingExtension(
                                             m_running->request, {installed}, {offeredVersion()}) ==
                                             ReplacementAction::replace;
    return m_running->isReplacing;
}

void UinputDriver::runHelper(const char* command) {
    if (m_places.helper.isEmpty())
        return fail(systemExtensionUnknownError, tr("The driver helper is not installed."));
    // The prompt is the desktop's; a question on a terminal would never be seen.
    const auto started = startDetachedChild(
        m_places.authorize,
        {QStringLiteral("--disable-internal-agent"), m_places.helper, QLatin1String(command)}, this,
        [this](int status) { helperEnded(status); });
    if (!started)
        return fail(systemExtensionAuthorizationRequired,
                    tr("Administrator rights can't be asked for: pkexec is not installed."));
    if (!std::exchange(m_running->isApprovalAnnounced, true) && m_running->delegate)
        m_running->delegate->requestNeedsUserApproval(m_running->request);
}

void UinputDriver::helperEnded(int status) {
    switch (status) {
    case driver::helperDone:
        return look();
    case driver::helperAccessFailed:
        return finish(systemExtensionWillCompleteAfterReboot);
    case driver::helperNoDriver:
        return fail(systemExtensionNotFound,
                    tr("The uinput driver can't be loaded into this kernel."));
    case driver::helperBusy:
        return fail(systemExtensionRequestCanceled, tr("Another process holds the driver."));
    case driver::helperRuleFailed:
        return fail(systemExtensionUnknownError, tr("The access rule can't be changed."));
    case promptDismissed:
        return fail(systemExtensionAuthorizationRequired,
                    tr("The request for administrator rights was dismissed."));
    case notAuthorized:
        return fail(systemExtensionForbiddenByPolicy,
                    tr("Administrator rights were refused: this system's policy does not allow the "
                       "change, or nothing is running that could ask for a password."));
    default:
        return fail(systemExtensionUnknownError, tr("The driver helper failed (%1).").arg(status));
    }
}

void UinputDriver::finish(std::int64_t result) {
    const Running ended = *std::exchange(m_running, std::nullopt);
    if (ended.delegate)
        ended.delegate->didFinishWithResult(ended.request, result);
    serveNext();
}

void UinputDriver::fail(std::int64_t code, const QString& text) {
    const Running ended = *std::exchange(m_running, std::nullopt);
    if (ended.delegate)
        ended.delegate->didFailWithError(ended.request,
                                         SystemExtensionError::ofService(code, text));
    serveNext();
}

} // namespace tamsel
