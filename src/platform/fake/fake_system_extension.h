#pragma once

#include "platform/system_extension.h"

#include <QList>
#include <QPointer>

namespace tamsel {

/// Records what is submitted; the test plays the platform's part for the request submitted last
/// (or the one at `index`, to let outcomes come in another order).
class FakeSystemExtensionService final : public SystemExtensionService {
public:
    QList<SystemExtensionRequest> requests;
    QPointer<SystemExtensionRequestDelegate> delegate; ///< of the last request

    void submit(const SystemExtensionRequest& request,
                SystemExtensionRequestDelegate& itsDelegate) override {
        requests.append(request);
        delegate = &itsDelegate;
    }

    ReplacementAction askReplacement(const QString& installed, const QString& offered) {
        return delegate->actionForReplacingExtension(requests.last(), {installed}, {offered});
    }
    void needApproval() { delegate->requestNeedsUserApproval(requests.last()); }
    void finish(std::int64_t result) { finish(result, requests.size() - 1); }
    void finish(std::int64_t result, qsizetype index) {
        delegate->didFinishWithResult(requests.at(index), result);
    }
    void fail(const SystemExtensionError& error) {
        delegate->didFailWithError(requests.last(), error);
    }
    void fail(std::int64_t code) {
        fail(SystemExtensionError::ofService(code, QStringLiteral("Failure %1").arg(code)));
    }
};

} // namespace tamsel
