#include "broker/calls/CallLink.h"

#include "broker/calls/Peer.h"
#include "platform/NmaLogHelper.h"

#include <algorithm>
#include <array>
#include <functional>
#include <thread>
#include <utility>

namespace trs {

namespace {

using Kind = CallFailure::Kind;
using CarriedOut = CallFailure::CarriedOut;
using Clock = Poller::Clock;

constexpr char const* wasRemoved = "the peer was removed";

Multiplexer::Caller thisCaller() { return std::hash<std::thread::id>()(std::this_thread::get_id()); }

} // namespace

CallLink::CallLink(Peer& peer) : peer_(peer), link_(peer.dialer()) {}

CallLink::Ticket CallLink::post(Call& call)
{
    std::string complaint = Engine::instance().start();
    std::lock_guard const lock(mutex_);
    if (number_ == 0) {
        number_ = Engine::instance().poller().add(shared_from_this());
    }
    if (isClosed_ || !complaint.empty()) {
        ended_.push_back({&call, Kind::notConnected, CarriedOut::no, isClosed_ ? wasRemoved : std::move(complaint)});
        wake();
        return 0;
    }
    call.number = 0;
    Ticket const ticket = decisions_.add(call, call.message.size(), Clock::now() + call.time, thisCaller());
    setTimer();
    if (link_.isOpen() && Engine::isOnThread()) {
        if (!std::exchange(isPutOff_, true)) {
            Engine::instance().putOff(*this, shared_from_this());
        }
    } else if (link_.isOpen() && decisions_.inFlight() == 1) {
        send(); // nobody is there to do it for this call sooner
    } else {
        wake();
    }
    return ticket;
}

// Under the lock.
void CallLink::wake() { Engine::instance().poller().tell(number_); }

void CallLink::cancel(Ticket ticket)
{
    std::lock_guard const lock(mutex_);
    if (auto const ended = decisions_.cancel(ticket)) {
        end(*ended, false);
        wake();
    }
}

void CallLink::close()
{
    std::lock_guard const lock(mutex_);
    isClosed_ = true;
    if (number_ != 0) {
        link_.shutDown();
        wake();
    }
}

void CallLink::open()
{
    std::lock_guard const lock(mutex_);
    isClosed_ = false;
}

void CallLink::flush()
{
    std::lock_guard const lock(mutex_);
    isPutOff_ = false;
    if (link_.isOpen()) {
        send();
    }
}

// Under the lock, like all that follows but for what takes it.
void CallLink::send()
{
    std::array<Channel::Piece, 64> pieces;
    for (;;) {
        auto const& outgoing = decisions_.outgoing();
        if (outgoing.empty()) {
            link_.rest();
            return;
        }
        std::size_t const count = std::min(outgoing.size(), pieces.size());
        std::size_t length = 0;
        std::size_t skipped = decisions_.sentOfFirst();
        for (std::size_t i = 0; i < count; ++i) {
            Multiplexer::Outgoing const& each = outgoing[i];
            std::span<unsigned char const> bytes(rest_);
            if (each.call != nullptr) {
                if (each.call->number != each.number) {
                    each.call->number = each.number;
                    finishMessage(each.call->message, each.number);
                }
                bytes = {each.call->message.data(), each.call->message.size()};
            }
            pieces[i] = {bytes.data() + skipped, bytes.size() - skipped};
            length += pieces[i].length;
            skipped = 0;
        }
        std::size_t const taken = link_.send(std::span(pieces).first(count));
        decisions_.sent(taken);
        if (taken < length) {
            return;
        }
    }
}

void CallLink::setTimer()
{
    auto next = decisions_.nextDeadline();
    if (auto const ofLink = link_.nextTime(); ofLink && (!next || *ofLink < *next)) {
        next = ofLink;
    }
    // One that comes too early does no harm, and is set once for many calls.
    if (next && (!timer_ || *next < *timer_)) {
        timer_ = next;
        Engine::instance().poller().setTimer(number_, next);
    }
}

void CallLink::end(Multiplexer::AllEnded const& all, bool isMalformed)
{
    for (Multiplexer::Ended const& ended : all) {
        end(ended, isMalformed);
    }
}

void CallLink::end(Multiplexer::Ended const& ended, bool isMalformed)
{
    Call& call = *ended.call;
    if (ended.isHalfSent) {
        rest_.assign(call.message.data(), call.message.data() + call.message.size());
    }
    CarriedOut const carriedOut = ended.mayBeCarriedOut ? CarriedOut::unknown : CarriedOut::no;
    auto const because = [&](Kind kind, std::string reason) {
        ended_.push_back({&call, kind, carriedOut, std::move(reason)});
    };
    switch (ended.why) {
    case Multiplexer::Why::cancelled:
        because(Kind::cancelled, "the call was cancelled");
        break;
    case Multiplexer::Why::deadline:
        because(Kind::deadline, LogMakeString(ended.mayBeCarriedOut ? "no reply within %d ms"
                                              : link_.isOpen()      ? "the request was not taken within %d ms"
                                                                    : "no connection within %d ms",
                                              static_cast<int>(call.time.count())));
        break;
    case Multiplexer::Why::lost:
        if (isClosed_) {
            because(ended.mayBeCarriedOut ? Kind::connectionLost : Kind::notConnected,
                    ended.mayBeCarriedOut ? "the peer was removed meanwhile" : wasRemoved);
        } else if (isMalformed && ended.mayBeCarriedOut) {
            because(Kind::malformedReply, "what came back answers no request");
        } else {
            because(Kind::connectionLost, ended.mayBeCarriedOut
                                              ? "the connection was lost while the reply was awaited"
                                              : "the connection was lost before the request was sent");
        }
        break;
    case Multiplexer::Why::noWay:
        because(Kind::notConnected, isClosed_ ? wasRemoved : link_.why());
        break;
    }
}

void CallLink::lose(bool isMalformed)
{
    link_.close();
    end(decisions_.lose(), isMalformed);
}

// Without the lock.
void CallLink::tellEnded()
{
    std::unique_lock lock(mutex_);
    std::vector<Ending> const ended = std::exchange(ended_, {});
    lock.unlock();
    for (Ending const& ending : ended) {
        ending.call->fail(ending.kind, ending.carriedOut, ending.reason);
    }
}

void CallLink::ready(Poller::Events events)
{
    std::unique_lock lock(mutex_);
    if ((events & Poller::timeIsOver) != 0) {
        timer_.reset();
        end(decisions_.pass(Clock::now()));
    }
    if (isClosed_) {
        lose(false);
        end(decisions_.fail());
    } else if (!link_.isOpen() && link_.advance(events)) {
        link_.isOpen() ? decisions_.open() : end(decisions_.fail());
    }
    if (link_.isOpen() && (events & Poller::canReceive) != 0) {
        lock.unlock();
        receive();
        lock.lock();
    }
    if (decisions_.isOverburdened()) {
        LogDispatch(4, "the connection to " + peer_.endpoint() + " is closed: too many calls were given up there");
        lose(false);
    }
    if (link_.isNone() && decisions_.needsWay()) {
        link_.begin(number_, Deadline::current());
    }
    if (link_.isOpen()) {
        send();
    }
    setTimer();
    lock.unlock();
    tellEnded();
}

// Without the lock.
void CallLink::receive()
{
    bool isMalformed = false;
    if (!link_.receive([this](TipprmiStream& message) { return take(message); }, isMalformed)) {
        if (isMalformed) {
            LogDispatch(4, "what " + peer_.endpoint() + " sent is malformed");
        }
        std::lock_guard const lock(mutex_);
        lose(isMalformed);
    }
}

// Without the lock.
bool CallLink::take(TipprmiStream& message)
{
    MessageHeader header{};
    if (!readHeader(message, header)) {
        return false;
    }
    Call* call = nullptr;
    {
        std::lock_guard const lock(mutex_);
        bool const isAnswer = header.kind == MessageKind::reply || header.kind == MessageKind::locateReply;
        if (!isAnswer || decisions_.answer(header.number, call) == Multiplexer::Answers::nothing) {
            return false;
        }
    }
    if (call == nullptr) {
        return true; // of one that nobody waits for
    }
    if (header.kind != call->answerKind) {
        call->fail(Kind::malformedReply, CarriedOut::unknown, "what came back does not answer the request");
        return false;
    }
    call->takeAnswer(header, message);
    return true;
}

} // namespace trs
