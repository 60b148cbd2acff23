// LoginPace: when a login's password is checked: the later, the more wrong ones its client has sent for that name.
#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace trs::adapter {

// Told of what happens, and when. After the first wrong password of an address for a name the next one is checked 250
// ms later, then 500 ms and so on up to 4 s, and none is refused for that.
// Forgotten are an address and name that had none for ten minutes, and, when there are too many, those that had the
// fewest.
class LoginPace {
public:
    using Time = std::chrono::steady_clock::time_point;
    using Duration = Time::duration;

    static constexpr std::size_t mostRemembered = 1024;

    // A login that comes now: when its password may be checked, which the next of the same address and name waits for,
    // too. Nothing when that is later than `patience` allows; it is as if the login had not come.
    std::optional<Time> admit(std::string const& address, std::string_view user, Time now, Duration patience);
    // What became of it.
    void noteWrong(std::string const& address, std::string_view user, Time now);
    void noteRight(std::string const& address, std::string_view user);

    std::size_t remembered() const { return entries_.size(); }

private:
    struct Entry {
        unsigned wrong = 0;
        Time last; // wrong one
        Time next; // that may be checked
    };
    using Key = std::pair<std::string, std::string>;

    static Key keyOf(std::string const& address, std::string_view user);
    static bool isOver(Entry const& entry, Time now);
    void makeRoom(Time now);

    std::map<Key, Entry> entries_;
};

} // namespace trs::adapter
