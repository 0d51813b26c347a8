#pragma once

#include "platform/bundle.h"

namespace tamsel {

/// A bundle that knows its daemon, unless it is told not to.
class FakeBundle final : public Bundle {
public:
    bool hasDaemon = true;

    std::optional<QString> infoString(const QString&) const override { return std::nullopt; }
    std::optional<QString> pathForResource(const QString& name,
                                           const QString& type) const override {
        return hasDaemon && name == u"tamsel-daemon" && type == u"app" ? std::optional("/d")
                                                                       : std::nullopt;
    }
};

} // namespace tamsel
