#include "tools/trsadapter/Sessions.h"

#include <array>
#include <cstdlib>
#include <fmt/format.h>
#include <sys/random.h>
#include <utility>

namespace trs::adapter {

namespace {

std::string makeId()
{
    std::array<unsigned char, 16> bytes;
    if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        std::abort(); // cannot happen once the system has started; an identifier to guess would be worse
    }
    std::string id;
    for (unsigned char const byte : bytes) {
        id += fmt::format("{:02x}", byte);
    }
    return id;
}

} // namespace

Sessions::Sessions(std::chrono::seconds timeout, Clock clock) : timeout_(timeout), clock_(std::move(clock)) {}

std::optional<Sessions::Session> Sessions::begin(std::string const& user, std::string const& address,
                                                 std::string const& id, Session& active)
{
    std::lock_guard const lock(mutex_);
    expire();
    if (session_ && session_->id != id) {
        active = *session_;
        return std::nullopt;
    }
    session_ = Session{makeId(), user, address};
    end_ = clock_() + timeout_;
    return session_;
}

Sessions::Check Sessions::check(std::string const& id, std::string const& address)
{
    std::lock_guard const lock(mutex_);
    expire();
    if (!session_ || session_->id != id) {
        return {Standing::none, {}};
    }
    if (session_->address != address) {
        return {Standing::foreign, {}};
    }
    end_ = clock_() + timeout_;
    return {Standing::active, session_->user};
}

void Sessions::end(std::string const& id)
{
    std::lock_guard const lock(mutex_);
    if (session_ && session_->id == id) {
        session_.reset();
    }
}

std::optional<Sessions::Session> Sessions::active()
{
    std::lock_guard const lock(mutex_);
    expire();
    return session_;
}

void Sessions::expire()
{
    if (session_ && clock_() >= end_) {
        session_.reset();
    }
}

} // namespace trs::adapter
