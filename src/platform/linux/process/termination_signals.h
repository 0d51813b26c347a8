#pragma once

#include "base/unique_fd.h"

#include <QObject>

#include <functional>

namespace tamsel {

/// Turns SIGTERM and SIGINT into a call on the main thread. Needs the application object.
class TerminationSignals final : public QObject {
public:
    /// Keeps the two signals from ending the process at once. Call it before any other thread
    /// starts, since threads inherit it.
    static void block();

    explicit TerminationSignals(std::function<void()> onSignal);

private:
    UniqueFd m_fd;
};

} // namespace tamsel
