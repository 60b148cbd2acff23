// The session of the client that has logged in: one at a time.
#pragma once

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

namespace trs::adapter {

// May be used from any thread.
class Sessions {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    struct Session {
        std::string id; // 32 hexadecimal digits that nobody can guess
        std::string user;
        std::string address; // of the client
    };
    enum class Standing {
        active,  // the session's client, whose session lasts longer now
        foreign, // the session was made from another address
        none,    // no session, or one that is over
    };

    struct Check {
        Standing standing;
        std::string user; // of the session, when it is active
    };

    // A session that `timeout` passes by without a message is over.
    explicit Sessions(std::chrono::seconds timeout, Clock clock = std::chrono::steady_clock::now);

    // Begins a session, also in place of the one with the identifier `id`. Nothing when another one is active, which
    // `active` then is.
    std::optional<Session> begin(std::string const& user, std::string const& address, std::string const& id,
                                 Session& active);
    Check check(std::string const& id, std::string const& address);
    // Ends the session with this identifier.
    void end(std::string const& id);
    // The active session.
    std::optional<Session> active();

private:
    void expire();

    std::chrono::seconds timeout_;
    Clock clock_;
    std::mutex mutex_;
    std::optional<Session> session_;
    std::chrono::steady_clock::time_point end_;
};

} // namespace trs::adapter
