// Which calls of the simulated unit are answered badly, and how.
#pragma once

#include "broker/framing/Message.h"
#include "catalogue/SimulatorClient.h"
#include "catalogue/Text.h"

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace trs::sim {

enum class MisbehaviourKind {
    refuse,  // is not executed, and answered as refused
    delay,   // is executed late
    drop,    // is executed and not answered
    late,    // is executed at once and answered late
    twice,   // is answered twice
    cut,     // the reply lacks its end, and says so in its length
    flip,    // one bit of the reply is another
    lie,     // the reply's first count, of elements or characters, is too large; without one, its length
    close,   // the connection ends in the middle of the reply
    trickle, // the reply comes byte by byte
};

// May be used by any thread.
class MisbehaviourPlan {
public:
    using Misbehaviour = SimulatorClient::Misbehaviour;

    // Has calls come by the plan; empty, or why they cannot. Called with every fault.
    using Engage = std::function<std::string()>;

    // Called, on any thread, when what is left of a fault has become less.
    using Spent = std::function<void()>;

    // What happens by chance is the same with the same seed and the same calls.
    explicit MisbehaviourPlan(unsigned long seed, Engage engage = {}, Spent spent = {})
        : engage_(std::move(engage)), spent_(std::move(spent)), random_(seed)
    {
    }
    // Chance begins anew.
    void setSeed(unsigned long seed)
    {
        std::lock_guard const lock(mutex_);
        random_.seed(seed);
    }

    // Adds a fault. Empty, with its number, or what is wrong with it.
    std::string inject(Misbehaviour const& fault, unsigned long& number);
    // Ends the fault of that number; 0 ends all. False when there is none of that number.
    bool withdraw(unsigned long number);
    TipprmiSequence<SimulatorClient::NumberedMisbehaviour> all() const;
    // What is left of those that can still strike: with the calls that are still to come before the first one that is
    // struck, and the number of those that still are.
    std::vector<Misbehaviour> left() const;

    struct Strike {
        MisbehaviourKind kind;
        std::chrono::milliseconds delay;
        std::uint32_t chance; // decides what the kind leaves open
    };
    // What befalls this call, which is counted: of the faults that concern it the oldest.
    std::optional<Strike> strike(ObjectAddress const& call);

    // From the words of a command, "cut operation=IfNet.getMtu call=3 count=1": empty, or what is wrong with them.
    static std::string parse(catalogue::Words const& words, Misbehaviour& fault);
    // As parse() takes it, without what is not said.
    static std::string text(Misbehaviour const& fault);
    static std::string_view nameOf(MisbehaviourKind kind);

private:
    struct Rule {
        SimulatorClient::NumberedMisbehaviour stated;
        MisbehaviourKind kind;
        std::optional<std::uint32_t> classId;
        std::optional<std::uint32_t> opIndex;
    };

    static bool concerns(Rule const& rule, ObjectAddress const& call);
    bool strikes(Rule& rule);

    Engage const engage_;
    Spent const spent_;
    mutable std::mutex mutex_;
    std::vector<Rule> rules_;
    unsigned long lastNumber_ = 0;
    std::mt19937 random_;
};

} // namespace trs::sim
