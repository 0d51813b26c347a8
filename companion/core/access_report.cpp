#include "core/access_report.h"

namespace tamsel {

namespace {

const char* reason(NodeAccess access) {
    switch (access) {
    case NodeAccess::ok:
        return "ready";
    case NodeAccess::noNode:
        return "not there";
    case NodeAccess::noAccess:
        return "no permission";
    case NodeAccess::notInGroupYet:
        return "no permission before the next login, the group is granted already";
    }
    return "";
}

} // namespace

std::string describe(const AccessReport& report) {
    return std::string("virtual input driver: ") + reason(report.uinput) +
           "; input devices: " + reason(report.input);
}

} // namespace tamsel
