// The calls that share one connection, and what is to be done about them.
#pragma once

#include "broker/machine/TimeAndChance.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory_resource>
#include <optional>
#include <set>
#include <span>
#include <unordered_map>
#include <vector>

namespace trs {

// Decides without a socket, a clock, a thread or a lock: it is told what happens to the calls and to the way to the
// peer, and answers which messages go out next, which call a reply answers, and which calls have ended, each once.
//
//     waiting --> staged --> written --> answered
//        |          |           |
//        +----------+           +--> abandoned: the caller has gone, and the late reply is thrown away
//        ended, not carried out
class Multiplexer {
public:
    using Time = TimeAndChance::Time;
    // What a call is to its owner; nothing but an identity here.
    struct Call;
    using Ticket = std::uint64_t;
    // Callers get their turn one after the other, each for one call, when calls have to wait.
    using Caller = std::uint64_t;
    struct Limits {
        std::size_t calls = 64;                       // sent and not answered
        std::size_t bytes = std::size_t{1024} * 1024; // of their requests; one may always be sent
        std::size_t abandoned = 1024;                 // beyond them the connection is closed
        std::uint32_t numbers = 0xFFFFFFFF;           // then they begin with 1 again; more than may be unanswered
    };
    enum class Why { cancelled, deadline, lost, noWay };
    struct Ended {
        Call* call;
        Why why;
        bool mayBeCarriedOut;
        bool isHalfSent; // the rest of its message must still go out, from sentOfFirst() on
    };
    using AllEnded = std::vector<Ended>;
    // A call whose message goes out under this number.
    struct Outgoing {
        Call* call; // null: the rest of an abandoned one's
        std::uint32_t number;
    };

    Multiplexer() : Multiplexer(Limits()) {}
    explicit Multiplexer(Limits limits) : limits_(limits) {}
    Multiplexer(Multiplexer const&) = delete;
    Multiplexer& operator=(Multiplexer const&) = delete;

    // A new call, whose message has that many bytes.
    Ticket add(Call& call, std::size_t size, Time deadline, Caller caller);
    // Nobody waits for the call any more. Nothing when it has ended before.
    std::optional<Ended> cancel(Ticket ticket);
    // The calls whose time is over.
    AllEnded pass(Time now);

    // There is a way to the peer, over which nothing has been sent.
    void open();
    // There is none any more. Calls of which no byte was sent wait for another one, if this one has carried any answer.
    AllEnded lose();
    // There is none to be had.
    AllEnded fail();
    // That many more bytes of what goes out were taken.
    void sent(std::size_t bytes);
    enum class Answers { call, nobody, nothing };
    // A reply of that number has come. It answers a call, which is at its end now; or one that is abandoned, or was
    // answered before; or nothing that was ever asked: then the peer cannot be believed any more.
    Answers answer(std::uint32_t number, Call*& call);

    // What goes out next, in this order; at first the rest of the message that has begun. Nothing without a way.
    std::deque<Outgoing> const& outgoing();
    std::size_t sentOfFirst() const { return sentOfFirst_; }
    // Whether calls wait for a way that there is not.
    bool needsWay() const { return !isOpen_ && waiting_ != 0; }
    // Whether there are too many abandoned calls: the way is to be closed.
    bool isOverburdened() const { return abandoned_ > limits_.abandoned; }
    // When to call pass().
    std::optional<Time> nextDeadline() const;
    // Nobody waits for anything.
    bool isIdle() const { return deadlines_.empty(); }
    std::size_t inFlight() const { return inFlight_; }

private:
    using Slot = std::uint32_t;
    enum class State : std::uint8_t { none, waiting, staged, written, abandoned };
    struct Entry {
        Call* call = nullptr;
        Caller caller = 0;
        Time deadline;
        std::size_t size = 0;
        std::uint32_t generation = 0;
        std::uint32_t number = 0;
        State state = State::none;
    };

    static Ticket ticketOf(Slot slot, Entry const& entry) { return Ticket{entry.generation} << 32 | slot; }
    bool hasRoomFor(std::size_t size) const;
    void await(Slot slot, bool isFirst);
    void stopWaiting(Slot slot);
    void stage(Slot slot);
    bool isHalfSent(Entry const& entry) const;
    Ended end(Slot slot, Why why);
    void stopWatching(Slot slot);
    void leaveFlight(Entry const& entry);
    void release(Slot slot);

    Limits const limits_;
    bool isOpen_ = false;
    bool hasAnswered_ = false; // the way
    std::pmr::unsynchronized_pool_resource memory_;
    std::vector<Entry> entries_;
    std::vector<Slot> free_;
    std::map<Caller, std::deque<Slot>> callers_; // those who wait
    std::deque<Caller> turns_;
    std::size_t waiting_ = 0;
    std::deque<Outgoing> outgoing_;
    std::size_t sentOfFirst_ = 0;
    std::pmr::unordered_map<std::uint32_t, Slot> numbers_{&memory_};
    std::pmr::set<std::pair<Time, Slot>> deadlines_{&memory_};
    std::uint32_t lastNumber_ = 0;
    std::uint32_t numberBefore_ = 0;  // the way
    std::uint64_t numbersPassed_ = 0; // since
    std::size_t inFlight_ = 0;
    std::size_t bytesInFlight_ = 0;
    std::size_t abandoned_ = 0;
};

} // namespace trs
