#pragma once

#include "base/bytes.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tamsel {

/// One physical key event and what the daemon did with it.
struct KeyEvent {
    std::uint32_t usage = 0;       ///< HID usage as pressed, a code of KeyCodes
    bool keyDown = false;          ///< press or release
    std::uint8_t action = 0;       ///< a KeyEventAction
    std::uint32_t outputUsage = 0; ///< what was emitted; not meaningful when suppressed
    bool fromApple = false;        ///< the event came from an Apple-made device

    bool operator==(const KeyEvent&) const = default;
};

/// Values of KeyEvent::action.
enum KeyEventAction : std::uint8_t {
    keyPassthrough = 0,
    keySuppress = 1,
    keyRemap = 2,
    keyMedia = 3,
};

/// What the daemon serves. Every call is asynchronous: a reply comes as one call of its handler,
/// on a queue of the connection; a call that fails in transport gets no reply, its proxy's error
/// handler runs instead. No call has a time-out.
class TamselDaemonProtocol {
public:
    using BoolReply = std::function<void(bool)>;
    using StatusReply =
        std::function<void(bool isGrabbing, bool driverConnected, std::string statusText)>;

    virtual ~TamselDaemonProtocol() = default;

    /// `cfg` is an encoded Cfg; the reply tells whether the daemon took it.
    virtual void updateCfg(const Bytes& cfg, BoolReply reply) = 0;
    virtual void getStatus(StatusReply reply) = 0;
    /// The daemon's build number.
    virtual void getVersion(std::function<void(std::string version)> reply) = 0;
    virtual void stopGrabbing(BoolReply reply) = 0;
    virtual void startGrabbing(BoolReply reply) = 0;
    /// From now on every key event is reported on this connection.
    virtual void subscribeKeyViewer(BoolReply reply) = 0;
    virtual void unsubscribeKeyViewer(BoolReply reply) = 0;
    /// A JSON array of SeenDeviceInfo.
    virtual void getSeenDevices(std::function<void(Bytes devices)> reply) = 0;
};

/// What the application serves on the same connection; called on a queue of the connection.
class TamselAppCallbackProtocol {
public:
    using ClipboardReply = std::function<void(std::optional<std::string> text)>;
    using BoolReply = std::function<void(bool)>;

    virtual ~TamselAppCallbackProtocol() = default;

    virtual void onKeyEvent(const KeyEvent& event) = 0;
    virtual void requestClipboardText(ClipboardReply reply) = 0;
    /// `deadline` is in seconds on CLOCK_MONOTONIC; the request is void once it is reached.
    virtual void openURL(std::string url, double deadline, BoolReply reply) = 0;
};

/// The wire's names and D-Bus signatures (separate arguments, never structs).
namespace protocol {

inline constexpr std::string_view serviceName = "app.tamsel.daemon";
/// The account of the system-wide daemon.
inline constexpr const char* systemUser = "tamsel";

inline constexpr const char* daemonPath = "/app/tamsel/daemon";
inline constexpr const char* daemonInterface = "app.tamsel.TamselDaemonProtocol";
inline constexpr const char* appPath = "/app/tamsel/app";
inline constexpr const char* appInterface = "app.tamsel.TamselAppCallbackProtocol";
inline constexpr const char* agentPath = "/app/tamsel/agent";
inline constexpr const char* agentInterface = "app.tamsel.TamselAgentProtocol";
inline constexpr const char* registryInterface = "app.tamsel.TamselAgentRegistry";

/// A method as it travels: its name, the signature of its arguments and of its reply.
struct Method {
    const char* name;
    const char* arguments;
    const char* reply;
};

inline constexpr Method updateCfg{"updateCfg", "ay", "b"};
inline constexpr Method getStatus{"getStatus", "", "bbs"};
inline constexpr Method getVersion{"getVersion", "", "s"};
inline constexpr Method stopGrabbing{"stopGrabbing", "", "b"};
inline constexpr Method startGrabbing{"startGrabbing", "", "b"};
inline constexpr Method subscribeKeyViewer{"subscribeKeyViewer", "", "b"};
inline constexpr Method unsubscribeKeyViewer{"unsubscribeKeyViewer", "", "b"};
inline constexpr Method getSeenDevices{"getSeenDevices", "", "ay"};

inline constexpr Method onKeyEvent{"onKeyEvent", "ubyub", ""};
inline constexpr Method requestClipboardText{"requestClipboardText", "", "bs"};
inline constexpr Method openURL{"openURL", "sd", "b"};

/// On the daemon's object: the caller is its user's agent from now on.
inline constexpr Method registerAgent{"register", "", "b"};
/// On the agent's object: true when the command was started.
inline constexpr Method runCommand{"runCommand", "s", "b"};
/// The longest command in bytes: with its end, what the kernel takes as one argument of a program.
inline constexpr std::size_t maxCommandSize = std::size_t{128} * 1024 - 1;

/// State words of getStatus; any other text is a message to show as it stands.
namespace status {
inline constexpr std::string_view running = "RUNNING";
inline constexpr std::string_view userStopped = "USER_STOPPED";
inline constexpr std::string_view tccDenied = "TCC_DENIED";
inline constexpr std::string_view driverConnectedNotGrabbing = "DRIVER_CONNECTED_NOT_GRABBING";
inline constexpr std::string_view driverDisconnected = "DRIVER_DISCONNECTED";
/// What the application stands in itself when it has no proxy to ask.
inline constexpr std::string_view notConnected = "未連接";

/// The state word that an older daemon's Chinese text stands for; any other text unchanged.
std::string_view canonical(std::string_view statusText);
} // namespace status

} // namespace protocol

} // namespace tamsel
