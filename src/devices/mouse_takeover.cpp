#include "devices/mouse_takeover.h"

#include "config/storage_mgr.h"
#include "devices/device_list.h"
#include "platform/user_defaults.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <optional>

namespace tamsel {

namespace {

constexpr auto vendorField = "vendorID";
constexpr auto productIDField = "productID";
constexpr auto productField = "product";
constexpr auto hasKeyboardField = "hasKeyboard";

/// A whole number of 64 bits; JSON has fractions and larger ones, too.
std::optional<std::int64_t> integer(const QJsonValue& value) {
    const qint64 number = value.toInteger(0);
    // Whatever is no such number gives the default, be it 0 or 1.
    return number == 0 && value.toInteger(1) == 1 ? std::nullopt : std::optional(number);
}

std::optional<MouseTakeoverConfirmation> noted(const QByteArray& note) {
    const QJsonObject fields = QJsonDocument::fromJson(note).object();
    const auto vendor = integer(fields[QLatin1String(vendorField)]);
    const auto productID = integer(fields[QLatin1String(productIDField)]);
    const QJsonValue product = fields[QLatin1String(productField)];
    const QJsonValue hasKeyboard = fields[QLatin1String(hasKeyboardField)];
    if (!vendor || !productID || !product.isString() || !hasKeyboard.isBool())
        return std::nullopt;
    return MouseTakeoverConfirmation{.vendorID = *vendor,
                                     .productID = *productID,
                                     .product = product.toString().toStdString(),
                                     .hasKeyboard = hasKeyboard.toBool()};
}

void write(UserDefaults& defaults, const QByteArray& note) {
    // When the note can't be written, the configuration, in the same store, can't be either.
    static_cast<void>(defaults.setData(note, pendingTakeoverKey));
}

} // namespace

bool revertTakeover(const MouseTakeoverConfirmation& takeover,
                    std::vector<GrabbedDevice>& mouseDevices,
                    std::vector<GrabbedDevice>& excludedKeyboards) {
    const bool isRemoved = removeDevice(mouseDevices, takeover.device());
    const bool isExcluded = takeover.hasKeyboard && addDevice(excludedKeyboards, takeover.device());
    return isRemoved || isExcluded;
}

void notePendingTakeover(UserDefaults& defaults, const MouseTakeoverConfirmation& takeover) {
    write(defaults, QJsonDocument({{vendorField, qint64(takeover.vendorID)},
                                   {productIDField, qint64(takeover.productID)},
                                   {productField, QString::fromStdString(takeover.product)},
                                   {hasKeyboardField, takeover.hasKeyboard}})
                        .toJson(QJsonDocument::Compact));
}

void clearPendingTakeover(UserDefaults& defaults) {
    write(defaults, "");
}

void revertPendingTakeover(StorageMgr& storage, UserDefaults& defaults) {
    const auto data = defaults.dataForKey(pendingTakeoverKey);
    if (!data || !*data || (*data)->isEmpty())
        return;
    if (const auto takeover = noted(**data)) {
        Cfg cfg = storage.load();
        // Not there: it was taken back, or never saved, and only the note is left.
        if (containsDevice(cfg.mouseDevices, takeover->device())) {
            revertTakeover(*takeover, cfg.mouseDevices, cfg.excludedKeyboards);
            storage.save(cfg);
        }
    }
    clearPendingTakeover(defaults);
}

} // namespace tamsel
