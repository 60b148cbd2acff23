// Who is at the other end of a connection.
#pragma once

#include <string>
#include <vector>

namespace trs {

struct Principal {
    enum class Kind {
        anonymous,   // nothing is known: tcp: endpoints
        process,     // this process itself
        user,        // of this machine, as the system knows it of a Unix socket's other end since it connected
        certificate, // one that was checked: tls: endpoints
    };

    Kind kind = Kind::anonymous;
    std::string name;                // the user's, or what the table of names makes of the certificate
    std::vector<std::string> groups; // the user's, or what the table gives
    std::string origin;              // where it calls from, for people: an address, or what identifies the certificate

    // "user:alice", "tls:manager-7", "process" or "anonymous", as rules name it.
    std::string text() const
    {
        switch (kind) {
        case Kind::user:
            return "user:" + name;
        case Kind::certificate:
            return "tls:" + name;
        case Kind::process:
            return "process";
        case Kind::anonymous:
            break;
        }
        return "anonymous";
    }
};

} // namespace trs
