#include "base/node_access.h"

#include <algorithm>
#include <array>
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

std::vector<gid_t> heldGroups() {
    std::vector<gid_t> groups;
    if (const int count = ::getgroups(0, nullptr); count > 0) {
        groups.resize(static_cast<std::size_t>(count));
        groups.resize(static_cast<std::size_t>(std::max(::getgroups(count, groups.data()), 0)));
    }
    groups.push_back(::getegid());
    return groups;
}

std::vector<gid_t> groupsInDatabase(const char* name, gid_t primary) {
    std::vector<gid_t> groups(64);
    int count = static_cast<int>(groups.size());
    if (::getgrouplist(name, primary, groups.data(), &count) < 0) {
        count = std::clamp(count, 0, mostGroups);
        groups.resize(static_cast<std::size_t>(count));
        if (::getgrouplist(name, primary, groups.data(), &count) < 0)
            return {};
    }
    groups.resize(static_cast<std::size_t>(count));
    return groups;
}

/// `lookUp` is one of the database's reentrant functions, given the entry, its buffer and where the
/// result goes.
template <class LookUp>
std::vector<gid_t> grantedGroups(LookUp lookUp) {
    passwd entry{};
    passwd* found = nullptr;
    std::array<char, 16384> buffer{};
    if (lookUp(&entry, buffer.data(), buffer.size(), &found) != 0 || !found)
        return {};
    return groupsInDatabase(found->pw_name, found->pw_gid);
}

} // namespace

Groups Groups::current() {
    return {heldGroups(),
            grantedGroups([](auto... rest) { return ::getpwuid_r(::geteuid(), rest...); })};
}

Groups Groups::ofUser(const std::string& name) {
    const auto groups =
        grantedGroups([&name](auto... rest) { return ::getpwnam_r(name.c_str(), rest...); });
    return {groups, groups};
}

NodeAccess whyDenied(mode_t mode, gid_t group, mode_t wanted, const Groups& groups) {
    const bool wouldSuffice = (mode >> 3U & wanted) == wanted;
    return wouldSuffice && contains(groups.granted, group) && !contains(groups.held, group)
               ? NodeAccess::notInGroupYet
               : NodeAccess::noAccess;
}

NodeAccess inputAccess(std::span<const InputNodeAccess> nodes) {
    const auto someAre = [nodes](NodeAccess access) {
        return std::any_of(nodes.begin(), nodes.end(),
                           [access](const InputNodeAccess& node) { return node.access == access; });
    };
    const bool readsKeyboard =
        std::any_of(nodes.begin(), nodes.end(), [](const InputNodeAccess& node) {
            return node.isKeyboard && node.access == NodeAccess::ok;
        });
    for (const NodeAccess denied : {NodeAccess::notInGroupYet, NodeAccess::noAccess}) {
        if (!readsKeyboard && someAre(denied))
            return denied;
    }
    return someAre(NodeAccess::ok) ? NodeAccess::ok : NodeAccess::noNode;
}

} // namespace tamsel
