#pragma once

#include "config/records/records.h"

#include <QList>
#include <QString>

#include <vector>

namespace tamsel {

class StorageMgr;
class UserDefaults;

/// A mouse that the daemon was told to take over and that the user has yet to confirm.
struct MouseTakeoverConfirmation {
    std::int64_t vendorID = 0;
    std::int64_t productID = 0;
    std::string product = {};
    bool hasKeyboard = false;
    int remainingSeconds = 10;

    GrabbedDevice device() const { return {vendorID, productID, product}; }

    bool operator==(const MouseTakeoverConfirmation&) const = default;
};

/// Takes the takeover back in the two lists; true when either has changed.
bool revertTakeover(const MouseTakeoverConfirmation& takeover,
                    std::vector<GrabbedDevice>& mouseDevices,
                    std::vector<GrabbedDevice>& excludedKeyboards);

/// The unconfirmed takeovers, noted where the next run finds them: a user whose pointer is gone may
/// have no other way than to switch the machine off.
namespace pendingTakeovers {

inline const QString key = QStringLiteral("PendingMouseTakeover");

/// Replaces the note; an empty list says that nothing is pending.
void note(UserDefaults& defaults, const std::vector<MouseTakeoverConfirmation>& takeovers);
/// What an earlier run left unconfirmed; nothing when the note can't be read.
std::vector<MouseTakeoverConfirmation> noted(UserDefaults& defaults);
/// Takes back, in the stored configuration, what an earlier run left unconfirmed, and clears the
/// note. To be called before any configuration is sent.
void revert(StorageMgr& storage, UserDefaults& defaults);

} // namespace pendingTakeovers

} // namespace tamsel
