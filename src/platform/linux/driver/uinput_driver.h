#pragma once

#include "platform/background_queue.h"
#include "platform/linux/driver/uinput_state.h"
#include "platform/main_queue.h"
#include "platform/system_extension.h"

#include <QPointer>

#include <deque>
#include <optional>

namespace tamsel {

/// The kernel's uinput driver as a system extension. Activating it loads it and grants access to
/// it, each by the privileged helper and only as far as something is missing, so that a machine
/// that is set up asks nobody anything; the version is the access rule's. Deactivating takes the
/// grant back. Requests are served one after the other; while the authorization prompt is open,
/// the request needs the user's approval. Main thread; what is slow runs elsewhere.
class UinputDriver final : public QObject, public SystemExtensionService {
    Q_OBJECT

public:
    UinputDriver(MainQueue& queue, BackgroundQueue& background, UinputPlaces places,
                 QObject* parent = nullptr);

    void submit(const SystemExtensionRequest& request,
                SystemExtensionRequestDelegate& delegate) override;

private:
    struct Running {
        SystemExtensionRequest request;
        QPointer<SystemExtensionRequestDelegate> delegate;
        bool isApprovalAnnounced = false;
        bool isLoadTried = false;
        bool isAccessTried = false; ///< granted or revoked
        bool isReplacing = false;
    };

    void serveNext();
    /// Reads the state in the background and goes on with it.
    void look();
    void activate(const UinputState& state);
    void deactivate(const UinputState& state);
    bool mayReplace(const QString& installed);
    void runHelper(const char* command);
    void helperEnded(int status);
    void finish(std::int64_t result);
    void fail(std::int64_t code, const QString& text);

    MainQueue& m_queue;
    BackgroundQueue& m_background;
    const UinputPlaces m_places;
    std::optional<Running> m_running;
    std::deque<Running> m_waiting;
};

} // namespace tamsel
