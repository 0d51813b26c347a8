#pragma once

#include "platform/bundle.h"

#include <QMap>

namespace tamsel {

/// A bundle that knows its daemon, unless it is told not to.
class FakeBundle final : public Bundle {
public:
    bool hasDaemon = true;
    QMap<QString, QString> infoStrings;
    QStringList localizations;
    QStringList languages;
    QMap<QString, QString> resources; ///< paths by "subdirectory/name.type"

    std::optional<QString> infoString(const QString& key) const override {
        return infoStrings.contains(key) ? std::optional(infoStrings[key]) : std::nullopt;
    }
    std::optional<QString> pathForResource(const QString& name,
                                           const QString& type) const override {
        if (hasDaemon && name == u"tamsel-daemon" && type == u"app")
            return QStringLiteral("/d");
        const QString path = name + u'.' + type;
        return resources.contains(path) ? std::optional(resources[path]) : std::nullopt;
    }
    std::optional<QString> pathForResourceIn(const QString& subdirectory, const QString& name,
                                             const QString& type) const override {
        const QString path = QStringLiteral("%1/%2.%3").arg(subdirectory, name, type);
        return resources.contains(path) ? std::optional(resources[path]) : std::nullopt;
    }
    QStringList preferredLocalizations() const override { return localizations; }
    QStringList preferredLanguages() const override { return languages; }
};

} // namespace tamsel
