#pragma once

#include <QObject>

#include <functional>

namespace tamsel {

/// Turns SIGTERM and SIGINT into a call on the main thread. Make it before any other thread
/// starts: it blocks the two signals for the process.
class TerminationSignals final : public QObject {
public:
    explicit TerminationSignals(std::function<void()> onSignal);
    ~TerminationSignals() override;

private:
    int m_fd;
};

} // namespace tamsel
