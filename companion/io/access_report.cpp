#include "io/access_report.h"

#include <algorithm>
#include <grp.h>
#include <pwd.h>
#include <unistd.h>

namespace tamsel {

namespace {

/// More groups than any user has by right.
constexpr int mostGroups = 4096;

bool contains(const std::vector<gid_t>& groups, gid_t group) {
    return std::find(groups.begin(), groups.end(), group) != groups.end();
}

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

std::vector<gid_t> heldGroups() {
    std::vector<gid_t> groups;
    if (const int count = ::getgroups(0, nullptr); count > 0) {
        groups.resize(static_cast<std::size_t>(count));
        groups.resize(static_cast<std::size_t>(std::max(::getgroups(count, groups.data()), 0)));
    }
    groups.push_back(::getegid());
    return groups;
}

std::vector<gid_t> grantedGroups() {
    const passwd* const entry = ::getpwuid(::geteuid());
    if (!entry)
        return {};
    const std::string name = entry->pw_name;
    const gid_t primary = entry->pw_gid;
    std::vector<gid_t> groups(64);
    int count = static_cast<int>(groups.size());
    if (::getgrouplist(name.c_str(), primary, groups.data(), &count) < 0) {
        count = std::clamp(count, 0, mostGroups);
        groups.resize(static_cast<std::size_t>(count));
        if (::getgrouplist(name.c_str(), primary, groups.data(), &count) < 0)
            return {};
    }
    groups.resize(static_cast<std::size_t>(count));
    return groups;
}

} // namespace

std::string describe(const AccessReport& report) {
    return std::string("virtual input driver: ") + reason(report.uinput) +
           "; input devices: " + reason(report.input);
}

Groups Groups::current() {
    return {heldGroups(), grantedGroups()};
}

NodeAccess whyDenied(mode_t mode, gid_t group, mode_t wanted, const Groups& groups) {
    const bool wouldSuffice = (mode >> 3U & wanted) == wanted;
    return wouldSuffice && contains(groups.granted, group) && !contains(groups.held, group)
               ? NodeAccess::notInGroupYet
               : NodeAccess::noAccess;
}

} // namespace tamsel
