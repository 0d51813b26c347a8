#include "devices/mouse_takeover.h"

#include "config/storage_mgr.h"
#include "devices/device_list.h"
#include "platform/user_defaults.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace tamsel {

namespace {

constexpr auto vendorField = "vendorID";
constexpr auto productIDField = "productID";
constexpr auto productField = "product";
constexpr auto hasKeyboardField = "hasKeyboard";

} // namespace

bool revertTakeover(const MouseTakeoverConfirmation& takeover,
                    std::vector<GrabbedDevice>& mouseDevices,
                    std::vector<GrabbedDevice>& excludedKeyboards) {
    const bool isRemoved = removeDevice(mouseDevices, takeover.device());
    const bool isExcluded = takeover.hasKeyboard && addDevice(excludedKeyboards, takeover.device());
    return isRemoved || isExcluded;
}

namespace pendingTakeovers {

void note(UserDefaults& defaults, const std::vector<MouseTakeoverConfirmation>& takeovers) {
    QJsonArray list;
    for (const MouseTakeoverConfirmation& takeover : takeovers)
        list.append(QJsonObject{{vendorField, qint64(takeover.vendorID)},
                                {productIDField, qint64(takeover.productID)},
                                {productField, QString::fromStdString(takeover.product)},
                                {hasKeyboardField, takeover.hasKeyboard}});
    const QByteArray text =
        list.isEmpty() ? QByteArray() : QJsonDocument(list).toJson(QJsonDocument::Compact);
    static_cast<void>(defaults.setData(text, key));
}

std::vector<MouseTakeoverConfirmation> noted(UserDefaults& defaults) {
    const auto data = defaults.dataForKey(key);
    std::vector<MouseTakeoverConfirmation> takeovers;
    if (!data || !*data)
        return takeovers;
    const QJsonArray list = QJsonDocument::fromJson(**data).array();
    for (const QJsonValue entry : list) {
        const QJsonValue vendor = entry[QLatin1String(vendorField)];
        const QJsonValue product = entry[QLatin1String(productIDField)];
        if (vendor.isDouble() && product.isDouble())
            takeovers.push_back(
                {.vendorID = vendor.toInteger(),
                 .productID = product.toInteger(),
                 .product = entry[QLatin1String(productField)].toString().toStdString(),
                 .hasKeyboard = entry[QLatin1String(hasKeyboardField)].toBool()});
    }
    return takeovers;
}

void revert(StorageMgr& storage, UserDefaults& defaults) {
    const auto takeovers = noted(defaults);
    if (takeovers.empty())
        return;
    Cfg cfg = storage.load();
    bool isChanged = false;
    for (const MouseTakeoverConfirmation& takeover : takeovers) {
        // Not there any more: it was taken back, and only the note is left.
        if (containsDevice(cfg.mouseDevices, takeover.device()))
            isChanged |= revertTakeover(takeover, cfg.mouseDevices, cfg.excludedKeyboards);
    }
    if (isChanged)
        storage.save(cfg);
    note(defaults, {});
}

} // namespace pendingTakeovers

} // namespace tamsel
