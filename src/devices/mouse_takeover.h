#pragma once

#include "records/records.h"

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

// The unconfirmed takeover is noted where the next run finds it: a user whose pointer is gone may
// have no other way than to switch the machine off.

inline const QString pendingTakeoverKey = QStringLiteral("PendingMouseTakeover");

void notePendingTakeover(UserDefaults& defaults, const MouseTakeoverConfirmation& takeover);
void clearPendingTakeover(UserDefaults& defaults);
/// Takes back, in the stored configuration, what an earlier run left unconfirmed, and clears the
/// note; a note that can't be read is only cleared. To be called before any configuration is sent.
void revertPendingTakeover(StorageMgr& storage, UserDefaults& defaults);

} // namespace tamsel
