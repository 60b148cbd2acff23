#include "broker/transport/SocketOrigin.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <grp.h>
#include <netdb.h>
#include <pwd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace trs {

namespace {

constexpr std::size_t mostGroups = 65536; // the kernel's bound

// The name that `look` (getpwuid_r or getgrgid_r) tells for a number.
template <class Entry, class Id>
std::string nameFor(Id id, int (*look)(Id, Entry*, char*, std::size_t, Entry**), char* Entry::*name)
{
    std::vector<char> room(1024);
    Entry entry{};
    Entry* found = nullptr;
    while (look(id, &entry, room.data(), room.size(), &found) == ERANGE) {
        room.resize(room.size() * 2);
    }
    return found != nullptr ? found->*name : std::to_string(id);
}

std::vector<gid_t> groupsOf(int descriptor, gid_t first)
{
    std::vector<gid_t> groups(32);
    socklen_t size = 0;
    int error = 0;
    do {
        size = static_cast<socklen_t>(groups.size() * sizeof(gid_t));
        error = ::getsockopt(descriptor, SOL_SOCKET, SO_PEERGROUPS, groups.data(), &size) == 0 ? 0 : errno;
        groups.resize(error == 0 ? size / sizeof(gid_t) : groups.size() * 2);
    } while (error == ERANGE && groups.size() <= mostGroups);
    if (error != 0) {
        groups.clear();
    }
    if (std::ranges::find(groups, first) == groups.end()) {
        groups.insert(groups.begin(), first);
    }
    return groups;
}

} // namespace

Principal principalOf(int descriptor)
{
    Principal principal;
    int domain = 0;
    socklen_t size = sizeof domain;
    if (::getsockopt(descriptor, SOL_SOCKET, SO_DOMAIN, &domain, &size) != 0 || domain != AF_UNIX) {
        principal.origin = peerAddress(descriptor);
        return principal;
    }
    ucred credentials{};
    size = sizeof credentials;
    if (::getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &credentials, &size) != 0) {
        return principal;
    }
    principal.kind = Principal::Kind::user;
    principal.name = nameFor(credentials.uid, ::getpwuid_r, &passwd::pw_name);
    for (gid_t const each : groupsOf(descriptor, credentials.gid)) {
        principal.groups.push_back(nameFor(each, ::getgrgid_r, &group::gr_name));
    }
    principal.origin = "uid " + std::to_string(credentials.uid);
    return principal;
}

std::string peerAddress(int descriptor)
{
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    std::array<char, NI_MAXHOST> host{};
    std::array<char, NI_MAXSERV> port{};
    auto const* const any = reinterpret_cast<sockaddr const*>(&address);
    if (::getpeername(descriptor, reinterpret_cast<sockaddr*>(&address), &size) != 0 ||
        (address.ss_family != AF_INET && address.ss_family != AF_INET6) ||
        ::getnameinfo(any, size, host.data(), host.size(), port.data(), port.size(), NI_NUMERICHOST | NI_NUMERICSERV) !=
            0) {
        return {};
    }
    std::string const text = host.data();
    return (address.ss_family == AF_INET6 ? "[" + text + "]" : text) + ":" + port.data();
}

} // namespace trs
