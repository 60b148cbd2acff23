// Logins: has the passwords of logins checked, a few at a time.
#pragma once

#include "tools/trsadapter/Credentials.h"
#include "tools/trsadapter/LoginPace.h"

#include <condition_variable>
#include <mutex>
#include <string>

namespace trs::adapter {

// May be used from any thread.
class Logins {
public:
    enum class Verdict {
        right,
        wrong,
        busy, // too many at a time; the password was not checked
    };

    explicit Logins(Credentials const& credentials) : credentials_(credentials) {}

    // Waits for its turn before it checks the password, and after wrong ones for some time (LoginPace).
    Verdict check(std::string const& user, std::string const& password, std::string const& address);
    // Those that wait are told `busy`, and so are all from now on.
    void stop();

private:
    bool awaitTurn(std::string const& user, std::string const& address);

    Credentials const& credentials_;
    std::mutex mutex_;
    std::condition_variable changed_;
    LoginPace pace_;
    int held_ = 0;     // that wait because of wrong passwords
    int checking_ = 0; // whose password is being checked
    bool isStopped_ = false;
};

} // namespace trs::adapter
