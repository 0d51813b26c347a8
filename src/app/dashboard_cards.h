#pragma once

#include "app/status_card.h"

#include <QList>

namespace tamsel {

/// What the cards of the dashboard depend on.
struct DashboardFacts {
    bool driverLoaded = false;
    bool driverNeedsApproval = false;
    QString driverText; ///< the driver's status in words
    bool daemonUp = false;
    bool daemonNeedsApproval = false;
    bool hasDaemonStatus = false;
    bool daemonUnresponsive = false;
    bool driverConnected = false;
    bool daemonTccDenied = false;
    QString statusLine; ///< the daemon's status in words
    bool remappingEnabled = true;
    bool updateReady = false;
    QString failedUpdate; ///< why; empty: none has failed
};

/// The ids of the cards.
namespace dashboardCard {
inline const QString driver = QStringLiteral("driver");
inline const QString service = QStringLiteral("service");
inline const QString checking = QStringLiteral("checking");
inline const QString unresponsive = QStringLiteral("unresponsive");
inline const QString connection = QStringLiteral("connection");
inline const QString permission = QStringLiteral("permission");
inline const QString update = QStringLiteral("update");
inline const QString failedUpdate = QStringLiteral("failedUpdate");
} // namespace dashboardCard

/// Every card whose condition holds, in order; the first button is the primary one.
QList<StatusCard> dashboardCards(const DashboardFacts& facts);

/// The daemon's status code in words, translated; a code that is none of them as it stands.
QString daemonStatusLine(const QString& statusText);

} // namespace tamsel
