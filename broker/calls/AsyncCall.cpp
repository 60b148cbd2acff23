#include "broker/AsyncCall.h"

#include "broker/calls/Alarms.h"
#include "broker/calls/Handlers.h"
#include "broker/calls/Peer.h"
#include "broker/calls/RemoteCall.h"
#include "broker/calls/Search.h"
#include "broker/calls/TappedRoad.h"
#include "broker/objects/Execution.h"
#include "platform/NmaLogHelper.h"

#include <atomic>
#include <mutex>
#include <utility>

namespace trs {

namespace {

using Kind = CallFailure::Kind;
using CarriedOut = CallFailure::CarriedOut;
using Clock = Poller::Clock;

} // namespace

// From start to end: to an object of this process, by a worker; to one elsewhere, by the link to its peer, perhaps
// after a search for it. All but the beginning, cancel() and a worker's run happens on the engine's thread.
class AsyncCall::Progress final : public Multiplexer::Call, public Workers::Task {
public:
    Progress(AsyncCall& call, TreflectStubRef const& stub, std::uint32_t classId, std::uint32_t opIndex)
        : call_(call), stub_(stub), classId_(classId), opIndex_(opIndex)
    {
        beginRequest(message, true, stub_->oid(), classId, opIndex);
    }

    void start(std::chrono::milliseconds duration);
    void cancel();

    void takeAnswer(MessageHeader const& header, TipprmiStream& answer) override;
    void fail(Kind kind, CarriedOut carriedOut, std::string reason) override;
    void run() override;
    void refuse() override;

private:
    enum class State { waiting, running, ended };

    std::shared_ptr<Progress> keep() { return {call_.shared_from_this(), this}; }
    void later(Kind kind, CarriedOut carriedOut, std::string reason);
    void startHere();
    void send();
    void search(std::vector<Peer*> const& peers);
    void succeed(TipprmiStream& reply);
    CallFailure failureBecause(Kind kind, CarriedOut carriedOut, std::string reason) const;
    void end(CallFailure const& failure);
    void complete(CallFailure const* failure);
    void endHere(Kind kind, std::string reason);

    AsyncCall& call_;
    TreflectStubRef const stub_;
    std::uint32_t const classId_;
    std::uint32_t const opIndex_;
    std::shared_ptr<AsyncCall> self_; // until it ends
    Clock::time_point deadline_;
    Peer* peer_ = nullptr;
    bool isExclusive_ = false;
    bool isSearched_ = false;
    std::atomic<State> state_ = State::waiting;
    bool isHere_ = false;
    bool isTapped_ = false; // it comes back to this process
    Alarms::Alarm alarm_;   // here
    std::mutex mutex_;      // of where the call is, for cancel()
    bool isCancelled_ = false;
    CallLink* link_ = nullptr;
    CallLink::Ticket ticket_ = 0;
};

AsyncCall::AsyncCall(TreflectStubRef const& stub, std::uint32_t classId, std::uint32_t opIndex)
    : progress_(std::make_unique<Progress>(*this, stub, classId, opIndex))
{
}

AsyncCall::~AsyncCall() = default;

TipprmiStream& AsyncCall::request() { return progress_->message; }
void AsyncCall::start(std::chrono::milliseconds time) { progress_->start(time); }
void AsyncCall::cancel() { progress_->cancel(); }
bool AsyncCall::isOnItsThread() { return Engine::isOnThread(); }

void AsyncCall::later(std::function<void()> act)
{
    if (Engine::instance().start().empty()) {
        Alarms::instance().post(std::move(act));
    } else {
        act();
    }
}

void AsyncCall::Progress::start(std::chrono::milliseconds duration)
{
    self_ = call_.shared_from_this();
    auto const keeper = self_; // it may have ended on another thread before this one returns
    time = duration;
    deadline_ = Clock::now() + duration;
    if (std::string why = Engine::instance().start(); !why.empty()) {
        fail(Kind::notConnected, CarriedOut::no, std::move(why));
        return;
    }
    if (message.size() > TIPPRMI_MAX_MESSAGE) {
        later(
            Kind::refused, CarriedOut::no,
            LogMakeString("the request has %zu bytes and a message %zu at most", message.size(), TIPPRMI_MAX_MESSAGE));
        return;
    }
    if (stub_->localServer() != nullptr) {
        peer_ = TappedRoad::by(*stub_.get());
        if (peer_ == nullptr) {
            startHere();
            return;
        }
        isTapped_ = isSearched_ = true;
        send();
        return;
    }
    Candidates const candidates(*stub_.get());
    isExclusive_ = candidates.isExclusive;
    if (candidates.peer != nullptr) {
        peer_ = candidates.peer;
        send();
    } else if (!candidates.inQuestion.empty()) {
        search(candidates.inQuestion);
    } else {
        later(Kind::notConnected, CarriedOut::no, candidates.reason);
    }
}

// Not while it is started, nor cancelled.
void AsyncCall::Progress::later(Kind kind, CarriedOut carriedOut, std::string reason)
{
    Alarms::instance().post(
        [self = keep(), kind, carriedOut, reason = std::move(reason)] { self->fail(kind, carriedOut, reason); });
}

void AsyncCall::Progress::startHere()
{
    isHere_ = true;
    alarm_.set(deadline_, [weak = std::weak_ptr(keep())] {
        if (auto const self = weak.lock()) {
            self->endHere(Kind::deadline, LogMakeString("the object has not answered within %d ms",
                                                        static_cast<int>(self->time.count())));
        }
    });
    if (!Handlers::submit(keep())) {
        later(Kind::busy, CarriedOut::no, "no thread is left for it in this process");
    }
}

void AsyncCall::Progress::run()
{
    State waiting = State::waiting;
    if (!state_.compare_exchange_strong(waiting, State::running)) {
        return; // it has been given up
    }
    ObjectAddress address{};
    TipprmiStream reply(100);
    if (!readPreparedRequest(message, address) ||
        !executeHere(*stub_.get(), true, classId_, opIndex_, message, reply)) {
        end(CallFailure(lastCallFailure()));
        return;
    }
    reply.rewind();
    succeed(reply);
}

void AsyncCall::Progress::refuse() { later(Kind::busy, CarriedOut::no, "no thread is left for it in this process"); }

void AsyncCall::Progress::endHere(Kind kind, std::string reason)
{
    CarriedOut const carriedOut = state_.load() == State::running ? CarriedOut::unknown : CarriedOut::no;
    fail(kind, carriedOut, std::move(reason));
}

void AsyncCall::Progress::send()
{
    std::lock_guard const lock(mutex_);
    link_ = &peer_->calls();
    ticket_ = link_->post(*this);
    if (isCancelled_) {
        link_->cancel(ticket_);
    }
}

void AsyncCall::Progress::search(std::vector<Peer*> const& peers)
{
    isSearched_ = true;
    auto const left = std::chrono::ceil<std::chrono::milliseconds>(deadline_ - Clock::now());
    Search::start(peers, stub_->oid(), std::max(left, std::chrono::milliseconds(1)),
                  [self = keep()](Peer* found, Kind kind, char const* reason) {
                      if (found == nullptr) {
                          self->fail(kind, CarriedOut::no, reason);
                          return;
                      }
                      self->peer_ = found;
                      self->time =
                          std::max(std::chrono::ceil<std::chrono::milliseconds>(self->deadline_ - Clock::now()),
                                   std::chrono::milliseconds(1));
                      self->send();
                  });
}

void AsyncCall::Progress::cancel()
{
    std::lock_guard const lock(mutex_);
    if (std::exchange(isCancelled_, true)) {
        return;
    }
    if (link_ != nullptr) {
        link_->cancel(ticket_);
        return;
    }
    // At once, so that no worker begins it any more; told later.
    State waiting = State::waiting;
    State running = State::running;
    bool const isUnbegun = state_.compare_exchange_strong(waiting, State::ended);
    if (isUnbegun || (isHere_ && state_.compare_exchange_strong(running, State::ended))) {
        Alarms::instance().post([self = keep(), isUnbegun] {
            CallFailure const failure = self->failureBecause(
                Kind::cancelled, isUnbegun ? CarriedOut::no : CarriedOut::unknown, "the call was cancelled");
            self->complete(&failure);
        });
    }
}

void AsyncCall::Progress::takeAnswer(MessageHeader const& header, TipprmiStream& answer)
{
    if (header.status() == ReplyStatus::done) [[likely]] {
        if (!isTapped_ && !isExclusive_ && stub_->home() != peer_) {
            stub_->setHome(peer_);
        }
        answer.setOrigin(isTapped_ ? nullptr : peer_, isExclusive_);
        succeed(answer);
        return;
    }
    if (header.status() == ReplyStatus::noSuchObject && !isExclusive_ && !isSearched_) {
        stub_->setHome(nullptr);
        std::vector<Peer*> others = Candidates(*stub_.get()).inQuestion;
        std::erase(others, peer_);
        if (!others.empty()) {
            search(others);
            return;
        }
    }
    StatusFailure const failure = failureOf(header.status());
    fail(failure.kind, failure.carriedOut, failure.reason);
}

void AsyncCall::Progress::succeed(TipprmiStream& reply)
{
    if (state_.exchange(State::ended) == State::ended) {
        return;
    }
    call_.read(reply);
    if (!reply.hasUnmarshallingFailed()) [[likely]] {
        complete(nullptr);
        return;
    }
    reply.printUnmarshallError(classId_, opIndex_);
    CallFailure const failure =
        failureBecause(Kind::malformedReply, CarriedOut::yes, "the reply is shorter than the operation's");
    complete(&failure);
}

void AsyncCall::Progress::fail(Kind kind, CarriedOut carriedOut, std::string reason)
{
    if (kind == Kind::notConnected && !isExclusive_) {
        stub_->setHome(nullptr); // the next call looks for the object again
    }
    end(failureBecause(kind, carriedOut, std::move(reason)));
}

CallFailure AsyncCall::Progress::failureBecause(Kind kind, CarriedOut carriedOut, std::string reason) const
{
    return {kind,
            carriedOut,
            classId_,
            opIndex_,
            stub_->oid(),
            peer_ != nullptr ? peer_->endpoint() : std::string(),
            std::move(reason)};
}

void AsyncCall::Progress::end(CallFailure const& failure)
{
    if (state_.exchange(State::ended) != State::ended) {
        complete(&failure);
    }
}

// By whoever has ended it.
void AsyncCall::Progress::complete(CallFailure const* failure)
{
    if (failure != nullptr && failure->kind != Kind::cancelled) {
        LogDispatch(4, failure->text());
    }
    auto const keeper = std::exchange(self_, nullptr);
    if (isHere_) {
        alarm_.takeBack();
    }
    call_.complete(failure);
}

} // namespace trs
