#include "broker/calls/Multiplexer.h"

#include "broker/machine/Mutation.h"

#include <algorithm>
#include <utility>

namespace trs {

Multiplexer::Ticket Multiplexer::add(Call& call, std::size_t size, Time deadline, Caller caller)
{
    if (free_.empty()) {
        free_.push_back(static_cast<Slot>(entries_.size()));
        entries_.emplace_back();
    }
    Slot const slot = free_.back();
    free_.pop_back();
    Entry& entry = entries_[slot];
    entry = {&call, caller, deadline, size, entry.generation, 0, State::waiting};
    deadlines_.emplace(deadline, slot);
    if (isOpen_ && waiting_ == 0 && hasRoomFor(size)) {
        stage(slot);
    } else {
        await(slot, false);
    }
    return ticketOf(slot, entry);
}

bool Multiplexer::hasRoomFor(std::size_t size) const
{
    return inFlight_ == 0 || (inFlight_ < limits_.calls && bytesInFlight_ + size <= limits_.bytes);
}

void Multiplexer::await(Slot slot, bool isFirst)
{
    Entry& entry = entries_[slot];
    entry.state = State::waiting;
    std::deque<Slot>& waiting = callers_[entry.caller];
    if (waiting.empty()) {
        turns_.insert(isFirst ? turns_.begin() : turns_.end(), entry.caller);
    }
    waiting.insert(isFirst ? waiting.begin() : waiting.end(), slot);
    ++waiting_;
}

void Multiplexer::stopWaiting(Slot slot)
{
    auto const place = callers_.find(entries_[slot].caller);
    std::deque<Slot>& waiting = place->second;
    waiting.erase(std::ranges::find(waiting, slot));
    --waiting_;
    if (waiting.empty()) {
        turns_.erase(std::ranges::find(turns_, place->first));
        callers_.erase(place);
    }
}

void Multiplexer::stage(Slot slot)
{
    Entry& entry = entries_[slot];
    do { // one that was given up long ago may still have its number
        lastNumber_ = lastNumber_ < limits_.numbers ? lastNumber_ + 1 : 1;
        ++numbersPassed_;
        if (mutated(Fault::numberReused)) {
            numbers_.erase(lastNumber_);
        }
    } while (!numbers_.emplace(lastNumber_, slot).second);
    entry.number = lastNumber_;
    entry.state = State::staged;
    outgoing_.push_back({entry.call, entry.number});
    ++inFlight_;
    bytesInFlight_ += entry.size;
}

std::deque<Multiplexer::Outgoing> const& Multiplexer::outgoing()
{
    while (isOpen_ && !turns_.empty()) {
        Caller const caller = turns_.front();
        Slot const slot = callers_.at(caller).front();
        if (!hasRoomFor(entries_[slot].size)) {
            break;
        }
        stopWaiting(slot);
        if (callers_.contains(caller)) {
            turns_.pop_front();
            turns_.push_back(caller);
        }
        stage(slot);
    }
    return outgoing_;
}

bool Multiplexer::isHalfSent(Entry const& entry) const
{
    return sentOfFirst_ != 0 && outgoing_.front().number == entry.number;
}

void Multiplexer::stopWatching(Slot slot) { deadlines_.erase({entries_[slot].deadline, slot}); }

void Multiplexer::leaveFlight(Entry const& entry)
{
    --inFlight_;
    bytesInFlight_ -= entry.size;
}

void Multiplexer::release(Slot slot)
{
    Entry& entry = entries_[slot];
    entry.call = nullptr;
    entry.state = State::none;
    ++entry.generation;
    free_.push_back(slot);
}

// For its caller the call is over.
Multiplexer::Ended Multiplexer::end(Slot slot, Why why)
{
    Entry& entry = entries_[slot];
    bool const isHalf = entry.state == State::staged && isHalfSent(entry);
    Ended const ended{entry.call, why, isHalf || entry.state == State::written, isHalf};
    stopWatching(slot);
    if (entry.state == State::waiting) {
        stopWaiting(slot);
        release(slot);
        return ended;
    }
    if (!mutated(Fault::windowKept) || !ended.mayBeCarriedOut) {
        leaveFlight(entry);
    }
    if (ended.mayBeCarriedOut) {
        if (ended.isHalfSent) {
            outgoing_.front().call = nullptr;
        }
        entry.call = nullptr;
        entry.state = State::abandoned;
        ++entry.generation;
        ++abandoned_;
    } else {
        std::erase_if(outgoing_, [&entry](Outgoing const& each) { return each.number == entry.number; });
        numbers_.erase(entry.number);
        release(slot);
    }
    return ended;
}

std::optional<Multiplexer::Ended> Multiplexer::cancel(Ticket ticket)
{
    auto const slot = static_cast<Slot>(ticket);
    bool const isThere =
        slot < entries_.size() && ticketOf(slot, entries_[slot]) == ticket && entries_[slot].call != nullptr;
    return isThere ? std::optional(end(slot, Why::cancelled)) : std::nullopt;
}

Multiplexer::AllEnded Multiplexer::pass(Time now)
{
    AllEnded all;
    while (!deadlines_.empty() && deadlines_.begin()->first <= now) {
        all.push_back(end(deadlines_.begin()->second, Why::deadline));
    }
    return all;
}

std::optional<Multiplexer::Time> Multiplexer::nextDeadline() const
{
    return deadlines_.empty() ? std::nullopt : std::optional(deadlines_.begin()->first);
}

void Multiplexer::open()
{
    isOpen_ = true;
    hasAnswered_ = false;
    numberBefore_ = lastNumber_;
    numbersPassed_ = 0;
}

Multiplexer::AllEnded Multiplexer::lose()
{
    isOpen_ = false;
    AllEnded all;
    std::vector<Slot> unsent;
    for (Outgoing const& each : outgoing_) {
        Slot const slot = numbers_.at(each.number);
        if (each.call != nullptr && !isHalfSent(entries_[slot])) {
            unsent.push_back(slot);
        }
    }
    std::ranges::reverse(unsent); // as each goes before the others
    for (Slot const slot : unsent) {
        Entry const& entry = entries_[slot];
        leaveFlight(entry);
        numbers_.erase(entry.number);
        await(slot, true);
    }
    for (auto const& [number, slot] : numbers_) {
        Entry const& entry = entries_[slot];
        if (entry.state != State::abandoned) {
            all.push_back({entry.call, Why::lost, !mutated(Fault::writtenSaidUnsent), false});
            stopWatching(slot);
        }
        release(slot);
    }
    numbers_.clear();
    outgoing_.clear();
    sentOfFirst_ = inFlight_ = bytesInFlight_ = abandoned_ = 0;
    if (!hasAnswered_) {
        // A peer that takes connections and answers nothing would be asked for ever.
        std::ranges::move(fail(), std::back_inserter(all));
        std::ranges::for_each(all, [](Ended& ended) { ended.why = Why::lost; });
    }
    return all;
}

Multiplexer::AllEnded Multiplexer::fail()
{
    AllEnded all;
    for (auto const& [caller, waiting] : callers_) {
        for (Slot const slot : waiting) {
            all.push_back({entries_[slot].call, Why::noWay, false, false});
            stopWatching(slot);
            release(slot);
        }
    }
    callers_.clear();
    turns_.clear();
    waiting_ = 0;
    return all;
}

void Multiplexer::sent(std::size_t bytes)
{
    sentOfFirst_ += bytes;
    while (!outgoing_.empty()) {
        Entry& first = entries_[numbers_.at(outgoing_.front().number)];
        if (sentOfFirst_ < first.size) {
            break;
        }
        sentOfFirst_ -= first.size;
        if (first.state == State::staged) {
            first.state = State::written;
        }
        outgoing_.pop_front();
    }
}

Multiplexer::Answers Multiplexer::answer(std::uint32_t number, Call*& call)
{
    auto const asked = numbers_.find(number);
    if (asked == numbers_.end()) {
        std::uint64_t const place = (std::uint64_t{number} + limits_.numbers - 1 - numberBefore_) % limits_.numbers;
        bool const wasAsked = number != 0 && number <= limits_.numbers && place < numbersPassed_;
        return wasAsked ? Answers::nobody : Answers::nothing;
    }
    Slot const slot = asked->second;
    Entry const& entry = entries_[slot];
    if (entry.state == State::staged || isHalfSent(entry)) { // nobody can know its end
        return Answers::nothing;
    }
    hasAnswered_ = true;
    call = entry.call;
    if (call != nullptr) {
        leaveFlight(entry);
        stopWatching(slot);
    } else {
        --abandoned_;
    }
    numbers_.erase(asked);
    release(slot);
    return call != nullptr ? Answers::call : Answers::nobody;
}

} // namespace trs
