// Answers the messages of site management clients.
#pragma once

#include "tools/trsadapter/Document.h"
#include "tools/trsadapter/Identity.h"
#include "tools/trsadapter/Logins.h"
#include "tools/trsadapter/Sessions.h"

#include <optional>
#include <string>
#include <vector>

class ZYN_XmlParser;

namespace trs::adapter {

// May be used from any thread. docs/adapter.md has the messages and their answers.
class MessageHandler {
public:
    struct Request {
        std::string document;
        std::string address;   // of the client
        std::string sessionId; // that the client presents; empty for none
    };
    struct Answer {
        int status = 200; // of HTTP
        std::string document;
        std::string kind;                     // of the request, a word of the vocabulary
        std::string result;                   // a word of the vocabulary
        std::string user;                     // of the session that the message belongs to
        std::optional<std::string> sessionId; // that the client is to present from now on; empty for none
    };

    MessageHandler(Credentials const& credentials, Sessions& sessions, Identity const& identity);

    Answer handle(Request const& request);
    // Logins that wait are answered at once, and no more are taken.
    void stop() { logins_.stop(); }

private:
    Answer logIn(ZYN_XmlParser const& message, Request const& request);
    Answer logOut(ZYN_XmlParser const& message, Request const& request);
    Answer carryOut(ZYN_XmlParser const& message) const;
    Answer answer(ZYN_XmlParser const& message, int status, std::string const& kind, std::string const& result,
                  std::vector<Field> const& fields) const;
    Answer refuse(ZYN_XmlParser const& message, int status, std::string const& kind, std::string const& reason) const;

    Logins logins_;
    Sessions& sessions_;
    Identity const& identity_;
};

} // namespace trs::adapter
