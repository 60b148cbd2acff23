#include "tools/trsadapter/Logins.h"

#include <chrono>

namespace trs::adapter {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int mostChecking = 2; // a hash takes a processor's time and some 16 MiB
constexpr auto checkPatience = 5s;

// A login that is held back keeps a thread of the HTTP server: most of them must be left for others.
constexpr int mostHeld = 16;
constexpr auto holdPatience = 5s;

} // namespace

Logins::Verdict Logins::check(std::string const& user, std::string const& password, std::string const& address)
{
    if (!awaitTurn(user, address)) {
        return Verdict::busy;
    }
    bool const isRight = credentials_.accepts(user, password);
    std::lock_guard const lock(mutex_);
    --checking_;
    changed_.notify_all();
    if (isRight) {
        pace_.noteRight(address, user);
    } else {
        pace_.noteWrong(address, user, Clock::now());
    }
    return isRight ? Verdict::right : Verdict::wrong;
}

// Whether the password may be checked, which counts as begun then.
bool Logins::awaitTurn(std::string const& user, std::string const& address)
{
    std::unique_lock lock(mutex_);
    auto const now = Clock::now();
    auto const begin = pace_.admit(address, user, now, held_ < mostHeld ? holdPatience : 0s);
    if (!begin) {
        return false;
    }
    if (*begin > now) {
        ++held_;
        changed_.wait_until(lock, *begin, [this] { return isStopped_; });
        --held_;
    }
    changed_.wait_for(lock, checkPatience, [this] { return isStopped_ || checking_ < mostChecking; });
    bool const isTurn = !isStopped_ && checking_ < mostChecking;
    checking_ += isTurn ? 1 : 0;
    return isTurn;
}

void Logins::stop()
{
    std::lock_guard const lock(mutex_);
    isStopped_ = true;
    changed_.notify_all();
}

} // namespace trs::adapter
