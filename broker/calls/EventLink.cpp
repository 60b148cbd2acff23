#include "broker/calls/EventLink.h"

#include "broker/calls/Peer.h"
#include "broker/framing/Message.h"
#include "broker/objects/ObserverTable.h"
#include "broker/objects/RunPermission.h"
#include "platform/NmaLogHelper.h"
#include "rmi/TipprmiAny.h"
#include "rmi/TipprmiSequence.h"

#include <chrono>

namespace trs {

namespace {

// To look whether more has come costs a system call.
constexpr std::chrono::milliseconds lookInterval{10};

} // namespace

EventLink::EventLink(Peer& peer, TimeAndChance timing)
    : peer_(peer), timing_(std::move(timing)), subscriptions_(timing_)
{
}

EventLink::Answer EventLink::subscribe(OperationKey const& key, Deadline const& deadline, std::string& why)
{
    using State = Subscriptions::State;
    RunPermissionPause const waiting;
    std::unique_lock lock(mutex_);
    if (isStopping_ || !peer_.isOpen()) {
        why = "the peer was removed";
        return Answer::unreachable;
    }
    if (!isRunning_ && !(isRunning_ = thread_.start([this] { run(); }))) {
        why = "no thread could be started for its notifications";
        return Answer::unreachable;
    }
    if (auto const message = subscriptions_.add(key)) {
        send(*message);
    }
    changed_.notify_all();
    // Asked for anew each time: a stop may have taken it away.
    bool const isInTime = changed_.wait_for(lock, std::chrono::milliseconds(deadline.remaining()),
                                            [&] { return subscriptions_.state(key) != State::asked; });
    State const answer = subscriptions_.state(key);
    if (answer == State::confirmed) {
        return Answer::subscribed;
    }
    why = !isInTime               ? LogMakeString("no reply within %d ms", deadline.duration())
          : answer == State::none ? "the peer was removed"
                                  : why_;
    leave(key);
    return answer == State::noSuchObject ? Answer::noSuchObject : Answer::unreachable;
}

void EventLink::unsubscribe(OperationKey const& key)
{
    std::lock_guard const lock(mutex_);
    leave(key);
}

void EventLink::leave(OperationKey const& key)
{
    if (auto const message = subscriptions_.remove(key)) {
        send(*message);
    }
}

void EventLink::send(Subscriptions::Message const& message)
{
    using Asked = Subscriptions::Message::Kind;
    bool const isAsking = message.kind != Asked::unsubscribe;
    auto const& [oid, classId, opIndex] = message.key;
    TipprmiStream bytes(100);
    beginAddressed(bytes, isAsking ? MessageKind::subscribe : MessageKind::unsubscribe,
                   message.kind == Asked::renew ? 1 : 0, oid, classId, opIndex);
    if (!finishMessage(bytes, message.number) || !connection_->sendNow(bytes)) {
        connection_->shutDown(); // the thread sees it
    }
}

void EventLink::link(std::unique_ptr<Connection> connection)
{
    connection_ = std::move(connection);
    delivered_ = timing_.date();
    for (Subscriptions::Message const& message : subscriptions_.begin()) {
        send(message);
    }
}

void EventLink::run()
{
    becomeHandlerThread();
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return isStopping_ || !subscriptions_.isEmpty(); });
        if (isStopping_) {
            return;
        }
        lock.unlock();
        Deadline deadline;
        std::string why;
        std::unique_ptr<Connection> connection = peer_.connect(deadline, why);
        lock.lock();
        if (connection != nullptr && !isStopping_) {
            link(std::move(connection));
            lock.unlock();
            why = read(*connection_);
            lock.lock();
        }
        connection_.reset();
        why_ = std::move(why);
        Subscriptions::Gaps const begun = subscriptions_.lose(delivered_);
        isInGap_ = subscriptions_.hasGaps();
        changed_.notify_all();
        if (!begun.empty() && !isStopping_ && peer_.isOpen()) { // else it was ended here
            lock.unlock();
            tell(begun);
            lock.lock();
        }
        changed_.wait_for(lock, subscriptions_.pause(), [this] { return isStopping_ || subscriptions_.isAnyAsked(); });
    }
}

// Until the connection is lost. Why.
std::string EventLink::read(Connection& connection)
{
    TipprmiStream message(100);
    for (;;) {
        switch (connection.receiveNext(message)) {
        case Connection::Received::message:
            if (handle(message)) {
                noteDelivered(connection);
                continue;
            }
            [[fallthrough]];
        case Connection::Received::malformed:
            LogDispatch(4, "what " + peer_.endpoint() + " sent for notifications is malformed");
            return "what it sent for notifications is malformed";
        default:
            return "the connection for notifications was lost";
        }
    }
}

void EventLink::noteDelivered(Connection const& connection)
{
    TimeAndChance::Time const now = timing_.now();
    if (now - looked_ >= lookInterval) {
        looked_ = now;
        if (!connection.isStale()) {
            delivered_ = timing_.date();
        }
    }
}

bool EventLink::handle(TipprmiStream& message)
{
    MessageHeader header{};
    if (!readHeader(message, header)) {
        return false;
    }
    if (header.kind == MessageKind::subscriptionReply) {
        std::unique_lock lock(mutex_);
        Subscriptions::Gaps const ended = subscriptions_.confirm(header.number, header.status() == ReplyStatus::done);
        changed_.notify_all();
        lock.unlock();
        tell(ended);
        return true;
    }
    ObjectAddress address{};
    TipprmiSequence<TipprmiAny> parameters;
    if (header.kind != MessageKind::notification || !readAddress(message, address) ||
        !readParameters(message, parameters)) {
        return false;
    }
    if (isInGap_) {
        std::unique_lock lock(mutex_);
        Subscriptions::Gaps const ended = subscriptions_.notice(address.view());
        isInGap_ = subscriptions_.hasGaps();
        lock.unlock();
        tell(ended);
    }
    ObserverTable::instance().deliver(&peer_, address.view(), parameters);
    return true;
}

// On the thread.
void EventLink::tell(Subscriptions::Gaps const& gaps)
{
    for (NotificationGap gap : gaps) {
        gap.peer = peer_.endpoint();
        if (gap.until) {
            LogDispatch(6, gap.peer + " is back and sends notifications again");
        } else {
            LogDispatch(4, "the connection for notifications from " + gap.peer + " is lost");
        }
        tellGap(gap);
    }
}

void EventLink::stop()
{
    {
        std::lock_guard const lock(mutex_);
        isStopping_ = true;
        if (connection_ != nullptr) {
            connection_->shutDown();
        }
        changed_.notify_all();
    }
    {
        RunPermissionPause const waiting;
        thread_.join();
    }
    std::lock_guard const lock(mutex_);
    subscriptions_.clear();
    isRunning_ = isStopping_ = false;
    changed_.notify_all();
}

} // namespace trs
