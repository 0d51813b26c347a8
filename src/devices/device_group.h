#pragma once

#include "records/records.h"
#include "records/seen_device.h"

#include <QList>
#include <QObject>
#include <QString>

#include <vector>

namespace tamsel {

/// One physical device: everything that the daemon reports under one vendor and product identifier.
struct DeviceGroup {
    std::int64_t vendorID = 0;
    std::int64_t productID = 0;
    std::string product = {};
    bool hasKeyboard = false;
    bool hasMouse = false;
    bool kbSeized = false;    ///< the daemon holds a keyboard of it
    bool mouseSeized = false; ///< the daemon holds a mouse of it

    /// "1452:641".
    QString key() const;
    /// As the configuration names it.
    GrabbedDevice device() const { return {vendorID, productID, product}; }
    /// The daemon holds what there is of it.
    bool isActive() const { return (hasKeyboard && kbSeized) || (hasMouse && mouseSeized); }

    bool operator==(const DeviceGroup&) const = default;
};

/// The devices folded into groups, sorted by name in the user's locale without regard to case;
/// equal names stay in the order in which they came.
std::vector<DeviceGroup> deviceGroups(const std::vector<SeenDeviceInfo>& devices);

/// One row of the devices screen; the texts are translated and fit for a line.
struct DeviceRow {
    Q_GADGET
    Q_PROPERTY(QString key MEMBER key)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString type MEMBER type)
    Q_PROPERTY(QString identifier MEMBER identifier)
    Q_PROPERTY(bool hasKeyboard MEMBER hasKeyboard)
    Q_PROPERTY(bool hasMouse MEMBER hasMouse)
    Q_PROPERTY(bool active MEMBER active)
    Q_PROPERTY(bool on MEMBER on)

public:
    QString key;
    QString name;
    QString type;
    QString identifier;
    bool hasKeyboard = false;
    bool hasMouse = false;
    bool active = false;
    bool on = false; ///< taken over, or listened to

    bool operator==(const DeviceRow&) const = default;
};

DeviceRow deviceRow(const DeviceGroup& group, bool on);

/// A product's name for a line of the window; "Unknown" without one.
QString shownProduct(const std::string& product);

} // namespace tamsel
