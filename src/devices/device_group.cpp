#include "devices/device_group.h"

#include "config/text_rules.h"

#include <QCollator>
#include <QCoreApplication>

#include <algorithm>
#include <map>

namespace tamsel {

namespace {

struct DeviceTexts {
    Q_DECLARE_TR_FUNCTIONS(DeviceMgrVM)
};

void join(DeviceGroup& group, const SeenDeviceInfo& device) {
    if (group.product.empty())
        group.product = device.product;
    (device.isMouse ? group.hasMouse : group.hasKeyboard) = true;
    if (device.isSeized)
        (device.isMouse ? group.mouseSeized : group.kbSeized) = true;
}

QString typeOf(const DeviceGroup& group) {
    return group.hasKeyboard && group.hasMouse ? DeviceTexts::tr("Keyboard + Mouse")
           : group.hasMouse                    ? DeviceTexts::tr("Mouse")
                                               : DeviceTexts::tr("Keyboard");
}

QString identifierOf(const DeviceGroup& group) {
    if (group.vendorID < 0 || group.productID < 0)
        return DeviceTexts::tr("Built-in");
    const auto hex = [](std::int64_t number) {
        return QString::number(number, 16).toUpper().rightJustified(4, u'0');
    };
    return hex(group.vendorID) + u':' + hex(group.productID);
}

} // namespace

QString DeviceGroup::key() const {
    return QString::number(vendorID) + u':' + QString::number(productID);
}

std::vector<DeviceGroup> deviceGroups(const std::vector<SeenDeviceInfo>& devices) {
    std::vector<DeviceGroup> groups;
    std::map<std::pair<std::int64_t, std::int64_t>, std::size_t> places;
    for (const SeenDeviceInfo& device : devices) {
        const auto [place, isNew] =
            places.try_emplace({device.vendorID, device.productID}, groups.size());
        if (isNew)
            groups.push_back({.vendorID = device.vendorID, .productID = device.productID});
        join(groups[place->second], device);
    }
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::vector<std::pair<QString, DeviceGroup>> named;
    named.reserve(groups.size());
    for (DeviceGroup& group : groups)
        named.emplace_back(QString::fromStdString(group.product), std::move(group));
    std::stable_sort(named.begin(), named.end(), [&collator](const auto& a, const auto& b) {
        return collator.compare(a.first, b.first) < 0;
    });
    std::transform(named.begin(), named.end(), groups.begin(),
                   [](auto& entry) { return std::move(entry.second); });
    return groups;
}

DeviceRow deviceRow(const DeviceGroup& group, bool on) {
    return {.key = group.key(),
            .name = shownProduct(group.product),
            .type = typeOf(group),
            .identifier = identifierOf(group),
            .hasKeyboard = group.hasKeyboard,
            .hasMouse = group.hasMouse,
            .active = group.isActive(),
            .on = on};
}

QString shownProduct(const std::string& product) {
    return product.empty() ? DeviceTexts::tr("Unknown") : shownLine(product);
}

} // namespace tamsel
