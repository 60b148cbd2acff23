// Requests as bytes, and what holds one up.
#pragma once

#include "platform/TreflectORB.h"
#include "tests/support/Sockets.h"

#include <condition_variable>
#include <mutex>

namespace support {

inline Octets operator+(Octets left, Octets const& right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

// A message about QelLong::set of an object, as the wire's description has it.
inline Octets message(unsigned char kind, unsigned char detail, std::string const& id, Octets const& rest = {})
{
    auto const number = [](std::size_t value) {
        return Octets{static_cast<unsigned char>(value >> 24), static_cast<unsigned char>(value >> 16),
                      static_cast<unsigned char>(value >> 8), static_cast<unsigned char>(value)};
    };
    Octets const body = Octets{kind, detail, 0, 0, 0, 0, 0, 7, 0xa6, 0xd4, 0xe0, 0x92, 0, 0, 0, 1, 0, 0, 0, 1} +
                        number(id.size()) + Octets(id.begin(), id.end()) + rest;
    return number(body.size()) + body;
}
inline Octets const setting = message(1, 0, "S", {0, 0, 0, 5});
inline Octets const subscribing = message(5, 0, "S");
inline Octets const withdrawing = message(6, 0, "S");
inline Octets const isDone{0, 0, 0, 12, 2, 0, 0, 0, 0, 0, 0, 7, 0, 0, 0, 1};
inline Octets const isSubscribed{0, 0, 0, 8, 7, 0, 0, 0, 0, 0, 0, 7};
inline Octets const isFull{'T', 'O', 'I', 'P', 0, 1, 0, 1};

// A request to set "S" to the value, with a number; and its answer.
inline Octets numberedSetting(unsigned char number, unsigned char value)
{
    Octets request = message(1, 0, "S", {0, 0, 0, value});
    request[11] = number;
    return request;
}
inline Octets answered(unsigned char number)
{
    Octets answer = isDone;
    answer[11] = number;
    return answer;
}

// Has the next call of the service wait until it is let go.
class Gate {
public:
    void pass()
    {
        TreflectORB::releaseRunPermission();
        {
            std::unique_lock lock(mutex_);
            isReached_ = true;
            changed_.notify_all();
            changed_.wait_for(lock, support::patience, [this] { return isOpen_; });
        }
        TreflectORB::getRunPermission();
    }
    void awaitReached()
    {
        std::unique_lock lock(mutex_);
        EXPECT_TRUE(changed_.wait_for(lock, support::patience, [this] { return isReached_; }));
    }
    void open()
    {
        std::lock_guard const lock(mutex_);
        isOpen_ = true;
        changed_.notify_all();
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool isReached_ = false;
    bool isOpen_ = false;
};

} // namespace support
