#include "app/dashboard_cards.h"

#include "protocol/daemon_protocol.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace tamsel {

namespace {

struct DashboardTexts {
    Q_DECLARE_TR_FUNCTIONS(DashboardVM)
};
QString tr(const char* text) {
    return DashboardTexts::tr(text);
}

const QString warningSymbol = QStringLiteral("exclamationmark.triangle.fill");

StatusCard driverCard(const DashboardFacts& facts) {
    StatusCard card{.id = dashboardCard::driver,
                    .tone = StatusCard::Tone::neutral,
                    .symbol = QStringLiteral("circle.dashed"),
                    .title = tr("Virtual HID Driver"),
                    .lead = facts.driverText,
                    .button = tr("Load Extension")};
    if (facts.driverNeedsApproval) {
        card.tone = StatusCard::Tone::warning;
        card.symbol = warningSymbol;
        card.text = tr("Please allow the system extension in Privacy & Security settings");
        card.button = tr("Open System Settings");
    }
    return card;
}

StatusCard serviceCard(const DashboardFacts& facts) {
    return {.id = dashboardCard::service,
            .symbol = warningSymbol,
            .title = tr("Background Service"),
            .text = tr("Tamsel background service is not running. Please install it to enable "
                       "keyboard remapping."),
            .button = facts.daemonNeedsApproval ? tr("Open Login Items Settings")
                                                : tr("Install Service")};
}

StatusCard checkingCard() {
    return {.id = dashboardCard::checking,
            .tone = StatusCard::Tone::neutral,
            .title = tr("Checking permissions..."),
            .text = tr("Tamsel is checking the daemon, driver, and Input Monitoring permission "
                       "status.")};
}

StatusCard unresponsiveCard() {
    return {.id = dashboardCard::unresponsive,
            .symbol = warningSymbol,
            .title = tr("Background service not responding"),
            .text = tr("Tamsel's background service is not responding. It may be restarting after "
                       "an update. If this persists, toggle keyboard remapping off and on, or "
                       "restart Tamsel.")};
}

StatusCard connectionCard(const DashboardFacts& facts) {
    return {.id = dashboardCard::connection,
            .tone = StatusCard::Tone::error,
            .symbol = QStringLiteral("xmark.circle.fill"),
            .title = tr("Driver Connection"),
            .lead = facts.statusLine,
            .text = tr("The daemon cannot connect to Virtual HID Driver. Check if the driver "
                       "extension is approved in System Settings > Privacy & Security > Driver "
                       "Extensions."),
            .button = tr("Open System Settings")};
}

StatusCard permissionCard() {
    return {.id = dashboardCard::permission,
            .symbol = warningSymbol,
            .title = tr("Input Monitoring Permission"),
            .text = tr("Tamsel needs Input Monitoring permission to capture keyboard events. "
                       "Please enable 'tamsel-daemon' in the settings below."),
            .button = tr("Open Input Monitoring Settings")};
}

StatusCard updateCard() {
    return {.id = dashboardCard::update,
            .tone = StatusCard::Tone::accent,
            .symbol = QStringLiteral("arrow.down.circle.fill"),
            .title = tr("Update Ready"),
            .text = tr("Ready — admin password required to install"),
            .button = tr("Install & Restart")};
}

StatusCard failedUpdateCard(const QString& reason) {
    return {.id = dashboardCard::failedUpdate,
            .tone = StatusCard::Tone::error,
            .symbol = warningSymbol,
            .title = tr("Update Failed"),
            .text = reason,
            .button = tr("OK")};
}

} // namespace

QList<StatusCard> dashboardCards(const DashboardFacts& facts) {
    QList<StatusCard> cards;
    if (!facts.driverLoaded)
        cards << driverCard(facts);
    if (!facts.daemonUp)
        cards << serviceCard(facts);
    if (facts.driverLoaded && facts.daemonUp && facts.remappingEnabled) {
        if (facts.daemonUnresponsive)
            cards << unresponsiveCard();
        else if (!facts.hasDaemonStatus)
            cards << checkingCard();
        else if (!facts.driverConnected)
            cards << connectionCard(facts);
        else if (facts.daemonTccDenied)
            cards << permissionCard();
    }
    if (facts.updateReady)
        cards << updateCard();
    if (!facts.failedUpdate.isEmpty())
        cards << failedUpdateCard(facts.failedUpdate);
    const auto first = std::find_if(cards.begin(), cards.end(),
                                    [](const StatusCard& card) { return !card.button.isEmpty(); });
    if (first != cards.end())
        first->primary = true;
    return cards;
}

QString daemonStatusLine(const QString& statusText) {
    namespace word = protocol::status;
    static constexpr std::array lines{
        std::pair{word::running, QT_TRANSLATE_NOOP("DashboardVM", "Running normally")},
        std::pair{word::userStopped,
                  QT_TRANSLATE_NOOP("DashboardVM", "Keyboard remapping is currently disabled")},
        std::pair{word::tccDenied,
                  QT_TRANSLATE_NOOP("DashboardVM", "Input Monitoring permission is missing.")},
        std::pair{word::driverConnectedNotGrabbing,
                  QT_TRANSLATE_NOOP("DashboardVM",
                                    "Driver is connected, keyboard remapping is not active.")},
        std::pair{word::driverDisconnected,
                  QT_TRANSLATE_NOOP("DashboardVM", "Driver is not connected.")},
        std::pair{word::notConnected,
                  QT_TRANSLATE_NOOP("DashboardVM", "Daemon is not connected yet.")},
    };
    const std::string text = statusText.toStdString();
    const auto* const found =
        std::find_if(lines.begin(), lines.end(), [code = word::canonical(text)](const auto& line) {
            return line.first == code;
        });
    return found == lines.end() ? statusText : tr(found->second);
}

} // namespace tamsel
