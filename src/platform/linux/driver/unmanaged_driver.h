#pragma once

#include "platform/main_queue.h"
#include "platform/system_extension.h"

namespace tamsel {

/// For a daemon that somebody else runs, whose driver is that somebody's matter: every request
/// completes, and nothing is touched.
class UnmanagedDriver final : public SystemExtensionService {
public:
    explicit UnmanagedDriver(MainQueue& queue) : m_queue(queue) {}

    void submit(const SystemExtensionRequest& request,
                SystemExtensionRequestDelegate& delegate) override {
        m_queue.async(&delegate, [request, &delegate] {
            delegate.didFinishWithResult(request, systemExtensionCompleted);
        });
    }

private:
    MainQueue& m_queue;
};

} // namespace tamsel
