// A process that makes asynchronous calls: does what CallLink does with what the multiplexer decides.
#pragma once

#include "tests/simulation/ModelServer.h"

#include <optional>

namespace simulation {

using Clock = std::chrono::steady_clock;

inline Clock::time_point clockTime(Time time) { return Clock::time_point(std::chrono::microseconds(time)); }
inline Time worldTime(Clock::time_point time)
{
    return std::chrono::duration_cast<std::chrono::microseconds>(time.time_since_epoch()).count();
}

class Caller final : public Connection::Holder {
public:
    Caller(World& world, ModelServer& server) : world_(world), server_(server), dialer_(world, server)
    {
        Random& random = world_.random;
        limits_.calls = random.happens(500) ? 64 : 1 + random.upTo(7);
        limits_.bytes = random.happens(500) ? 1 << 20 : 100 + random.upTo(400);
        limits_.abandoned = 1 + random.upTo(15);
        if (random.happens(500)) { // so few that they begin anew again and again
            limits_.numbers = static_cast<std::uint32_t>(limits_.calls + limits_.abandoned + 2);
            world_.weather.twice = 0; // the second answer would be another call's
        }
        decisions_.emplace(limits_);
    }

    void post(bool mustSucceed)
    {
        Random& random = world_.random;
        Call& call = server_.calls.emplace_back();
        call.id = server_.calls.size() - 1;
        call.key = static_cast<unsigned>(random.upTo(objectCount - 1));
        call.size = 20 + random.upTo(random.happens(50) ? 1000 : 100);
        call.deadline = world_.now() + (mustSucceed ? 3 * second : random.between(20, 2000) * millisecond);
        call.mustSucceed = mustSucceed;
        world_.note("call", call.id, call.size);
        call.ticket = decisions_->add(call, call.size, clockTime(call.deadline), random.upTo(2));
        mine_.push_back(&call);
        ++waitedFor_;
        act();
    }
    // One of the last calls, which may have ended.
    void cancel()
    {
        if (mine_.empty()) {
            return;
        }
        Call const& call = *mine_[mine_.size() - 1 - world_.random.upTo(std::min<std::size_t>(mine_.size() - 1, 12))];
        bool const isWaitedFor = call.ends == 0;
        auto const ended = decisions_->cancel(call.ticket);
        world_.claim(ended.has_value() == isWaitedFor, "a call was cancelled that had ended, or was not", call.id);
        if (ended) {
            end(*ended);
        }
        act();
    }
    void restart()
    {
        world_.note("caller restarts");
        world_.count(Rare::clientRestarted);
        dialer_.stop();
        if (way_ != nullptr) {
            std::exchange(way_, nullptr)->close(Connection::client);
        }
        for (Call* const call : std::exchange(mine_, {})) { // nobody is left to be told
            call->ends = 1;
        }
        waitedFor_ = bytesOut_ = 0;
        decisions_.emplace(limits_);
    }
    void finish()
    {
        world_.claim(waitedFor_ == 0 && decisions_->isIdle(), "calls did not end", waitedFor_);
        world_.claim(decisions_->inFlight() == 0, "the window is not given back", decisions_->inFlight());
    }

    void receive(Connection& connection) override
    {
        while (&connection == way_) {
            auto const message = connection.take(Connection::client);
            if (!message) {
                break;
            }
            take(*message);
        }
        act();
    }
    void sendMore(Connection&) override { act(); }
    void lost(Connection& connection) override
    {
        if (&connection == way_) {
            lose();
            act();
        }
    }

private:
    using Why = trs::Multiplexer::Why;
    using Answers = trs::Multiplexer::Answers;

    void act()
    {
        if (decisions_->isOverburdened()) {
            world_.count(Rare::overburdened);
            way_->close(Connection::client);
            lose();
        }
        if (way_ == nullptr && !dialer_.isDialing() && decisions_->needsWay()) {
            dialer_.dial(*this, [this](Connection* connection) {
                way_ = connection;
                way_ != nullptr ? decisions_->open() : endAll(decisions_->fail());
                act();
            });
        }
        if (way_ != nullptr) {
            send();
        }
        auto const next = decisions_->nextDeadline();
        if (next && (!timer_ || worldTime(*next) < *timer_)) {
            timer_ = worldTime(*next);
            world_.after(*timer_ - world_.now(), [this] {
                timer_.reset();
                endAll(decisions_->pass(clockTime(world_.now())));
                act();
            });
        }
        world_.claim(decisions_->inFlight() <= limits_.calls, "more calls are out than may be", decisions_->inFlight());
    }

    void send()
    {
        std::uint64_t room = way_->room(Connection::client);
        std::uint64_t written = 0;
        for (;;) {
            auto const& outgoing = decisions_->outgoing();
            for (auto const& each : outgoing) {
                if (each.call != nullptr && !each.call->isOut) {
                    goOut(*each.call, each.number);
                }
            }
            if (outgoing.empty()) {
                break;
            }
            if (decisions_->sentOfFirst() == 0) {
                first_ = outgoing.front().call;
                world_.claim(first_ != nullptr, "nobody's call begins to be sent");
            }
            if (first_ == nullptr || room == 0) {
                break;
            }
            if (decisions_->sentOfFirst() == 0) {
                way_->begin(Connection::client,
                            {Message::Kind::call, first_->key, first_->number, first_->id, first_->size});
            }
            std::uint64_t const left = first_->size - decisions_->sentOfFirst();
            std::uint64_t const bytes = std::min(left, room);
            room -= bytes;
            written += bytes;
            decisions_->sent(bytes);
        }
        if (written != 0) {
            way_->write(Connection::client, written);
        }
        if (waitedFor_ > decisions_->inFlight()) {
            world_.count(Rare::windowFull);
        }
        world_.claim(bytesOut_ <= limits_.bytes || decisions_->inFlight() == 1, "more bytes are out than may be");
    }
    void goOut(Call& call, std::uint32_t number)
    {
        if (call.number != 0) {
            world_.count(Rare::movedToAnotherWay);
        }
        if (number < lastNumber_) {
            world_.count(Rare::numbersBegunAnew);
        }
        lastNumber_ = number;
        call.number = number;
        call.isOut = true;
        bytesOut_ += call.size;
    }

    void take(Message const& message)
    {
        Call* call = nullptr;
        Answers const answers = decisions_->answer(message.number, call);
        world_.note("answer", message.value, message.number);
        if (answers == Answers::nothing) {
            world_.claim(message.kind == Message::Kind::lie, "a true answer is not believed", message.value);
            world_.count(Rare::answeredFalsely);
            way_->close(Connection::client);
            lose();
            return;
        }
        world_.claim(message.kind == Message::Kind::reply, "a false answer is believed");
        if (call == nullptr) {
            bool const isSecond = answered_ == message.value;
            world_.count(isSecond ? Rare::answeredTwice : Rare::answeredLate);
            return;
        }
        answered_ = message.value;
        world_.count(Rare::answered);
        world_.claim(call->id == message.value, "the answer to another call", call->id);
        world_.claim(call->executions == 1, "a call was answered that was not carried out", call->id);
        finishOne(*call);
    }
    void lose()
    {
        way_ = nullptr;
        auto const all = decisions_->lose();
        bytesOut_ = 0;
        for (Call* const call : mine_) {
            call->isOut = false;
        }
        endAll(all);
        std::erase_if(mine_, [](Call const* call) { return call->ends != 0; });
    }
    void endAll(trs::Multiplexer::AllEnded const& all)
    {
        for (auto const& ended : all) {
            end(ended);
        }
    }
    void end(trs::Multiplexer::Ended const& ended)
    {
        Call& call = *ended.call;
        world_.note("ends", call.id, static_cast<std::uint64_t>(ended.why));
        world_.claim(ended.mayBeCarriedOut || call.executions == 0, "a call was said not to be carried out that was",
                     call.id);
        world_.claim(!call.mustSucceed, "a call failed though nothing was wrong any more", call.id);
        call.isSaidUnsent = !ended.mayBeCarriedOut;
        switch (ended.why) {
        case Why::cancelled:
            world_.count(ended.isHalfSent        ? Rare::cancelledHalfSent
                         : ended.mayBeCarriedOut ? Rare::cancelledSent
                                                 : Rare::cancelledUnsent);
            break;
        case Why::deadline:
            world_.count(Rare::deadline);
            world_.claim(world_.now() >= call.deadline, "a call ended before its time", call.id);
            break;
        case Why::lost:
            world_.count(Rare::lostUnanswered);
            break;
        case Why::noWay:
            world_.claim(!ended.mayBeCarriedOut, "a call without a way was carried out", call.id);
        }
        finishOne(call);
    }
    void finishOne(Call& call)
    {
        world_.claim(++call.ends == 1, "a call ended twice", call.id);
        world_.claim(world_.now() <= call.deadline, "a call ended after its time", call.id);
        --waitedFor_;
        if (std::exchange(call.isOut, false)) {
            bytesOut_ -= call.size;
        }
    }

    World& world_;
    ModelServer& server_;
    Dialer dialer_;
    trs::Multiplexer::Limits limits_;
    std::optional<trs::Multiplexer> decisions_;
    Connection* way_ = nullptr;
    std::vector<Call*> mine_; // the newest, and all that have not ended
    Call const* first_ = nullptr;
    std::size_t waitedFor_ = 0;
    std::uint64_t bytesOut_ = 0;
    std::uint32_t lastNumber_ = 0;
    std::uint64_t answered_ = ~std::uint64_t{0};
    std::optional<Time> timer_;
};

} // namespace simulation
