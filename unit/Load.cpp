#include "unit/Load.h"

#include <algorithm>
#include <array>

namespace trs::sim {

namespace {

constexpr std::array<std::string_view, 4> profileNames{"steady", "quiet", "busy-hour", "noise"}; // as Profile has them
constexpr unsigned minutesOfHour = 60;
constexpr unsigned hoursOfDay = 24;

// Of a steady network, in thousandths, at the beginning of each hour.
constexpr std::array<unsigned, hoursOfDay> day{180, 120, 90,  80,  80,  110,  240,  520,  900,  1250, 1400, 1250,
                                               980, 900, 880, 900, 960, 1150, 1500, 1700, 1450, 1000, 600,  320};

unsigned ofDay(unsigned long minute)
{
    unsigned long const hour = minute / minutesOfHour % hoursOfDay;
    auto const begin = static_cast<long>(day[hour]);
    auto const end = static_cast<long>(day[(hour + 1) % hoursOfDay]);
    return static_cast<unsigned>(begin + (end - begin) * static_cast<long>(minute % minutesOfHour) /
                                             static_cast<long>(minutesOfHour));
}

// `value` give or take a share of it in percent.
unsigned vary(unsigned value, std::uint64_t chance, unsigned percent)
{
    std::uint64_t const span = std::uint64_t{value} * 2 * percent / 100;
    return value - static_cast<unsigned>(span / 2) + static_cast<unsigned>(chance % (span + 1));
}

} // namespace

std::string_view Load::nameOf(Profile profile) { return profileNames[static_cast<std::size_t>(profile)]; }

std::optional<Load::Profile> Load::profileOf(std::string_view name)
{
    auto const* const found = std::ranges::find(profileNames, name);
    return found != profileNames.end() ? std::optional(static_cast<Profile>(found - profileNames.begin()))
                                       : std::nullopt;
}

std::string Load::names()
{
    std::string names;
    for (std::string_view const name : profileNames) {
        (names += names.empty() ? "" : ", ") += name;
    }
    return names;
}

std::uint64_t Load::chance(std::string_view owner, unsigned long minute) const
{
    std::uint64_t mixed = 0xcbf29ce484222325 ^ seed_; // FNV-1a, and the finish of SplitMix64
    for (char const character : owner) {
        mixed = (mixed ^ static_cast<unsigned char>(character)) * 0x100000001b3;
    }
    mixed += (minute + 1) * 0x9e3779b97f4a7c15;
    mixed = (mixed ^ (mixed >> 30)) * 0xbf58476d1ce4e5b9;
    mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111eb;
    return mixed ^ (mixed >> 31);
}

Load::Pace Load::paceOf(std::string_view owner, unsigned long minute) const
{
    constexpr unsigned steady = 1000;
    if (profile_ == Profile::steady) {
        return {steady, 0, minutesOfHour};
    }
    std::uint64_t const drawn = chance(owner, minute);
    std::uint64_t const size = drawn >> 20;
    unsigned const errored = (drawn >> 40) % 50 == 0 ? static_cast<unsigned>((drawn >> 48) % 4) + 1 : 0;
    switch (profile_) {
    case Profile::quiet:
        return {vary(steady / 20, drawn, 20), vary(160, size, 20), 0};
    case Profile::busyHour:
        return {vary(ofDay(minute), drawn, 10), vary(520, size, 15), ofDay(minute) > steady ? errored : 0};
    default:
        return {vary(steady, drawn, 80), vary(600, size, 60), errored};
    }
}

} // namespace trs::sim
