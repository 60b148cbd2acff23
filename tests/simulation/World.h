// A world in which everything follows from one number: time, chance, and the order of what happens.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace simulation {

// SplitMix64: the same numbers everywhere.
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next()
    {
        std::uint64_t number = state_ += 0x9E3779B97F4A7C15;
        number = (number ^ number >> 30) * 0xBF58476D1CE4E5B9;
        number = (number ^ number >> 27) * 0x94D049BB133111EB;
        return number ^ number >> 31;
    }
    std::uint64_t upTo(std::uint64_t most) { return next() % (most + 1); }
    std::int64_t between(std::int64_t least, std::int64_t most)
    {
        return least + static_cast<std::int64_t>(upTo(static_cast<std::uint64_t>(most - least)));
    }
    bool happens(unsigned perMille) { return upTo(999) < perMille; }

private:
    std::uint64_t state_;
};

using Time = std::int64_t; // microseconds since the world's beginning
constexpr Time millisecond = 1000;
constexpr Time second = 1000 * millisecond;

// What may go wrong, and how often. Each seed has a kind of its own: not everything goes wrong in each.
struct Weather {
    explicit Weather(Random& random)
    {
        auto const perMille = [&random](unsigned most) {
            return random.happens(500) ? static_cast<unsigned>(1 + random.upTo(most - 1)) : 0;
        };
        slow = perMille(80);
        stall = perMille(30);
        refuse = perMille(300);
        hang = perMille(100);
        drop = perMille(100);
        late = perMille(300);
        twice = perMille(100);
        lie = perMille(5);
        missing = perMille(300);
        cutInterval = random.happens(700) ? random.between(100, 4000) * millisecond : 0;
        restartInterval = random.happens(400) ? random.between(1000, 8000) * millisecond : 0;
        delay = random.happens(500) ? 2 * millisecond : 60 * millisecond;
        buffer = random.happens(300) ? random.between(20, 200) : 1 << 16;
        clock = random.happens(500) ? random.between(-1000, 1000) * second : 0;
    }
    // Nothing goes wrong any more.
    void heal()
    {
        slow = stall = refuse = hang = drop = late = twice = lie = missing = 0;
        cutInterval = restartInterval = 0;
        delay = millisecond;
    }

    // Of a thousand:
    unsigned slow;    // transfers take up to a second
    unsigned stall;   // readers do nothing for that time
    unsigned refuse;  // connections are refused
    unsigned hang;    // or not answered
    unsigned drop;    // calls get no answer
    unsigned late;    // get it after others
    unsigned twice;   // get it twice
    unsigned lie;     // answers answer nothing
    unsigned missing; // objects are not there
    Time cutInterval; // on average; 0: never
    Time restartInterval;
    Time delay; // of transfers, at most
    std::int64_t buffer;
    Time clock; // by which the wall clock leaps
};

// What the weather is to reach: each must have happened in a block of seeds.
enum class Rare {
    answered,
    answeredLate,
    answeredTwice,
    answeredFalsely,
    cancelledUnsent,
    cancelledHalfSent,
    cancelledSent,
    deadline,
    windowFull,
    overburdened,
    numbersBegunAnew,
    movedToAnotherWay,
    lostUnanswered,
    refused,
    gapTold,
    renewalsLostHalfWay,
    eventBeforeAllRenewed,
    inboxFull,
    slowSubscriberLeft,
    objectMissing,
    subscriptionTimedOut,
    serverRestarted,
    clientRestarted,
    count
};
constexpr std::array<char const*, static_cast<std::size_t>(Rare::count)> rareNames{"calls answered",
                                                                                   "late answers thrown away",
                                                                                   "second answers thrown away",
                                                                                   "false answers found out",
                                                                                   "cancelled before they were sent",
                                                                                   "cancelled half sent",
                                                                                   "cancelled after they were sent",
                                                                                   "given up at the deadline",
                                                                                   "window full",
                                                                                   "too many abandoned",
                                                                                   "numbers begun anew",
                                                                                   "moved to another connection",
                                                                                   "lost while the answer was awaited",
                                                                                   "connections refused",
                                                                                   "gaps told",
                                                                                   "renewals lost half way",
                                                                                   "events before all was renewed",
                                                                                   "inbox full",
                                                                                   "slow subscribers left",
                                                                                   "subscribed without an object",
                                                                                   "subscriptions timed out",
                                                                                   "restarts of the server",
                                                                                   "restarts of a client"};
using Counts = std::array<std::uint64_t, static_cast<std::size_t>(Rare::count)>;

class World {
public:
    explicit World(std::uint64_t seed) : random(seed), weather(random) { trace_.resize(kept); }

    Random random;
    Weather weather;
    Counts counts{};

    Time now() const { return now_; }
    void after(Time delay, std::function<void()> act)
    {
        queue_.push_back({now_ + delay, ++order_, std::move(act)});
        std::push_heap(queue_.begin(), queue_.end(), isLater);
    }
    // Lets things happen until that time, or until something is wrong.
    void runUntil(Time end)
    {
        while (failure_.empty() && !queue_.empty() && queue_.front().time <= end) {
            std::pop_heap(queue_.begin(), queue_.end(), isLater);
            Event const event = std::move(queue_.back());
            queue_.pop_back();
            now_ = event.time;
            event.act();
        }
        now_ = std::max(now_, end);
    }

    void count(Rare rare) { ++counts[static_cast<std::size_t>(rare)]; }
    // Whatever happens is noted: it makes the world's hash, and the trace of one that fails. `what` is a literal.
    void note(char const* what, std::uint64_t a = 0, std::uint64_t b = 0)
    {
        if (!failure_.empty()) {
            return;
        }
        auto const mix = [this](std::uint64_t number) {
            hash_ = (hash_ ^ number) * 0x100000001B3;
            hash_ ^= hash_ >> 29;
        };
        mix(static_cast<std::uint64_t>(now_));
        mix(static_cast<unsigned char>(*what) + a * 0x9E3779B97F4A7C15);
        mix(b);
        trace_[noted_++ % kept] = {now_, what, a, b};
    }
    // What must hold: else the world ends here.
    void claim(bool holds, char const* what, std::uint64_t a = 0)
    {
        if (!holds && failure_.empty()) {
            failure_ = std::string(what) + " (" + std::to_string(a) + ") at " + std::to_string(now_) + " us";
        }
    }
    std::string const& failure() const { return failure_; }
    std::uint64_t hash() const { return hash_; }
    // The last things that happened.
    std::string trace(std::size_t lines) const
    {
        std::string text;
        for (std::size_t i = noted_ - std::min({noted_, kept, lines}); i < noted_; ++i) {
            Note const& note = trace_[i % kept];
            text += std::to_string(note.time) + " us  " + note.what + ' ' + std::to_string(note.a) + ' ' +
                    std::to_string(note.b) + '\n';
        }
        return text;
    }
    static constexpr std::size_t kept = 4096;

private:
    struct Event {
        Time time;
        std::uint64_t order; // what is due at the same time happens as it was planned
        std::function<void()> act;
    };
    struct Note {
        Time time;
        char const* what;
        std::uint64_t a;
        std::uint64_t b;
    };
    static bool isLater(Event const& left, Event const& right)
    {
        return std::pair(left.time, left.order) > std::pair(right.time, right.order);
    }

    Time now_ = 0;
    std::uint64_t order_ = 0;
    std::vector<Event> queue_;
    std::uint64_t hash_ = 0xCBF29CE484222325;
    std::vector<Note> trace_;
    std::size_t noted_ = 0;
    std::string failure_;
};

} // namespace simulation
