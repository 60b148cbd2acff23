#include "tools/trsadapter/LoginPace.h"

#include <algorithm>
#include <tuple>

namespace trs::adapter {

namespace {

using namespace std::chrono_literals;

constexpr LoginPace::Duration firstPause = 250ms;
constexpr LoginPace::Duration longestPause = 4s;
constexpr unsigned mostDoublings = 4; // from the one to the other
constexpr LoginPace::Duration rememberedFor = 10min;

// Of longer names the beginning is enough, so that nobody fills the memory with them.
constexpr std::size_t nameLength = 64;

LoginPace::Duration pauseAfter(unsigned wrong)
{
    return wrong == 0 ? 0s : std::min(firstPause * (1U << std::min(wrong - 1, mostDoublings)), longestPause);
}

} // namespace

LoginPace::Key LoginPace::keyOf(std::string const& address, std::string_view user)
{
    return {address, std::string(user.substr(0, nameLength))};
}

bool LoginPace::isOver(Entry const& entry, Time now) { return now - entry.last >= rememberedFor; }

std::optional<LoginPace::Time> LoginPace::admit(std::string const& address, std::string_view user, Time now,
                                                Duration patience)
{
    auto const found = entries_.find(keyOf(address, user));
    if (found == entries_.end()) {
        return now;
    }
    Entry& entry = found->second;
    if (isOver(entry, now)) {
        entries_.erase(found);
        return now;
    }
    Time const begin = std::max(now, entry.next);
    if (begin - now > patience) {
        return std::nullopt;
    }
    entry.next = begin + pauseAfter(entry.wrong);
    return begin;
}

void LoginPace::noteWrong(std::string const& address, std::string_view user, Time now)
{
    Key key = keyOf(address, user);
    if (!entries_.contains(key)) {
        makeRoom(now);
    }
    Entry& entry = entries_[std::move(key)];
    ++entry.wrong;
    entry.last = now;
    entry.next = std::max(entry.next, now + pauseAfter(entry.wrong));
}

void LoginPace::noteRight(std::string const& address, std::string_view user) { entries_.erase(keyOf(address, user)); }

void LoginPace::makeRoom(Time now)
{
    if (entries_.size() < mostRemembered) {
        return;
    }
    std::erase_if(entries_, [now](auto const& entry) { return isOver(entry.second, now); });
    if (entries_.size() < mostRemembered) {
        return;
    }
    entries_.erase(std::min_element(entries_.begin(), entries_.end(), [](auto const& a, auto const& b) {
        return std::tie(a.second.wrong, a.second.last) < std::tie(b.second.wrong, b.second.last);
    }));
}

} // namespace trs::adapter
