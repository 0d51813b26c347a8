#pragma once

#include "platform/workspace.h"

#include <QObject>

namespace tamsel {

/// Opens URLs with the desktop's own opener, xdg-open.
class DesktopWorkspace final : public QObject, public Workspace {
public:
    void openURL(const QUrl& url, std::function<void(Result<void>)> done) override;
};

} // namespace tamsel
