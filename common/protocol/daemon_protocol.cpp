#include "protocol/daemon_protocol.h"

namespace tamsel::protocol::status {

std::string_view canonical(std::string_view statusText) {
    if (statusText == "運行中")
        return running;
    if (statusText == "驅動已連接，未攔截")
        return driverConnectedNotGrabbing;
    if (statusText == "驅動未連接")
        return driverDisconnected;
    return statusText;
}

} // namespace tamsel::protocol::status
