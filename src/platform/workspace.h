#pragma once

#include "base/error.h"

#include <QUrl>

#include <functional>

namespace tamsel {

/// The user's desktop session. Main thread.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// Opens the URL in the application that handles it, without raising that application.
    /// `done` runs later on the main thread with the outcome.
    virtual void openURL(const QUrl& url, std::function<void(Result<void>)> done) = 0;
};

} // namespace tamsel
