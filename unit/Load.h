// How busy the network around the simulated unit is, which its counters follow.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace trs::sim {

// Each minute of the unit's time has one pace. It depends on the profile, the seed, and whose counters ask: the same
// minute of the same object in the same unit has the same pace, whenever it is asked for.
class Load {
public:
    enum class Profile {
        steady,   // the same at all times
        quiet,    // a twentieth of that, with little noise
        busyHour, // a day's curve: nights are quiet, the busy hours are around 10 and 19
        noise,    // anything from a fifth to almost the double, at random
    };

    // "steady", "quiet", "busy-hour", "noise".
    static std::string_view nameOf(Profile profile);
    static std::optional<Profile> profileOf(std::string_view name);
    // All of them, for people.
    static std::string names();

    explicit Load(unsigned long seed) : seed_(seed) {}

    Profile profile() const { return profile_; }
    void setProfile(Profile profile) { profile_ = profile; }
    void setSeed(unsigned long seed) { seed_ = seed; }

    struct Pace {
        unsigned packetsPerMille; // of those of a steady network
        unsigned octetsPerPacket; // 0: as in a steady network
        unsigned erroredSeconds;  // of the minute's 60
    };
    Pace paceOf(std::string_view owner, unsigned long minute) const;
    bool isSteady() const { return profile_ == Profile::steady; }

private:
    std::uint64_t chance(std::string_view owner, unsigned long minute) const;

    unsigned long seed_;
    Profile profile_ = Profile::steady;
};

} // namespace trs::sim
