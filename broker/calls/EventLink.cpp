#include "broker/calls/EventLink.h"

#include "broker/calls/Peer.h"
#include "broker/framing/Message.h"
#include "broker/objects/ObserverTable.h"
#include "broker/objects/RunPermission.h"
#include "platform/NmaLogHelper.h"
#include "rmi/TipprmiAny.h"
#include "rmi/TipprmiSequence.h"

#include <algorithm>
#include <chrono>

namespace trs {

namespace {

constexpr int leastBackoff = 50;
constexpr int greatestBackoff = 2000;

} // namespace

EventLink::Answer EventLink::subscribe(OperationKey const& key, Deadline const& deadline)
{
    RunPermissionPause const waiting;
    std::unique_lock lock(mutex_);
    if (isStopping_ || !peer_.isOpen()) {
        return Answer::unreachable;
    }
    if (!isRunning_ && !(isRunning_ = thread_.start([this] { run(); }))) {
        return Answer::unreachable;
    }
    Subscription& subscription = subscriptions_[key];
    ++subscription.users;
    if (subscription.state != State::asked && subscription.state != State::confirmed) {
        ask(key, subscription, false);
        changed_.notify_all();
    }

    // Looked up anew each time: a stop may have taken it away.
    auto const state = [&] {
        auto const found = subscriptions_.find(key);
        return found != subscriptions_.end() ? found->second.state : State::failed;
    };
    changed_.wait_for(lock, std::chrono::milliseconds(deadline.remaining()), [&] { return state() != State::asked; });
    State const answer = state();
    if (answer == State::confirmed) {
        return Answer::subscribed;
    }
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
    auto const found = subscriptions_.find(key);
    if (found == subscriptions_.end() || --found->second.users != 0) {
        return;
    }
    State const state = found->second.state;
    subscriptions_.erase(found);
    if (connection_ != nullptr && (state == State::asked || state == State::confirmed)) {
        TipprmiStream message(100);
        beginAddressed(message, MessageKind::unsubscribe, 0, key.oid, key.classId, key.opIndex);
        if (!finishMessage(message, connection_->nextNumber()) || !connection_->sendNow(message)) {
            connection_->shutDown();
        }
        settle();
    }
}

// The link is as good as before its loss once the peer has answered all renewals.
void EventLink::settle()
{
    if (std::any_of(subscriptions_.begin(), subscriptions_.end(),
                    [](auto const& entry) { return entry.second.isRenewal; })) {
        return;
    }
    backoff_ = leastBackoff;
    if (isLost_) {
        isLost_ = false;
        LogDispatch(6, peer_.endpoint() + " is back and sends notifications again");
    }
}

void EventLink::ask(OperationKey const& key, Subscription& subscription, bool isRenewal)
{
    subscription.state = isRenewal ? State::confirmed : State::asked;
    subscription.isRenewal = isRenewal;
    if (connection_ == nullptr) {
        return; // link() asks
    }
    subscription.number = connection_->nextNumber();
    TipprmiStream message(100);
    beginAddressed(message, MessageKind::subscribe, isRenewal ? 1 : 0, key.oid, key.classId, key.opIndex);
    if (!finishMessage(message, subscription.number) || !connection_->sendNow(message)) {
        connection_->shutDown(); // the thread sees it
    }
}

bool EventLink::isAsked() const
{
    return std::any_of(subscriptions_.begin(), subscriptions_.end(),
                       [](auto const& entry) { return entry.second.state == State::asked; });
}

void EventLink::link(std::unique_ptr<Connection> connection)
{
    connection_ = std::move(connection);
    for (auto& [key, subscription] : subscriptions_) {
        bool const isRenewal = subscription.state == State::confirmed;
        if (isRenewal || subscription.state == State::asked) {
            ask(key, subscription, isRenewal);
        }
    }
    settle();
}

void EventLink::unlink()
{
    connection_.reset();
    for (auto& [key, subscription] : subscriptions_) {
        if (subscription.state == State::asked) {
            subscription.state = State::failed;
        }
    }
    changed_.notify_all();
}

void EventLink::run()
{
    becomeHandlerThread();
    std::unique_lock lock(mutex_);
    backoff_ = leastBackoff;
    for (;;) {
        changed_.wait(lock, [this] { return isStopping_ || !subscriptions_.empty(); });
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
            read(*connection_); // only this thread replaces it
            lock.lock();
            bool const isNews = !isStopping_ && !isLost_ && !subscriptions_.empty();
            isLost_ = isLost_ || isNews;
            if (isNews) {
                LogDispatch(4, "the connection for notifications from " + peer_.endpoint() + " is lost");
            }
        }
        unlink();
        changed_.wait_for(lock, std::chrono::milliseconds(backoff_), [this] { return isStopping_ || isAsked(); });
        backoff_ = std::min(backoff_ * 2, greatestBackoff);
    }
}

void EventLink::read(Connection& connection)
{
    TipprmiStream message(100);
    for (;;) {
        switch (connection.receiveNext(message)) {
        case Connection::Received::message:
            if (handle(message)) {
                continue;
            }
            [[fallthrough]];
        case Connection::Received::malformed:
            LogDispatch(4, "what " + peer_.endpoint() + " sent for notifications is malformed");
            return;
        default:
            return;
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
        confirm(header.number, header.status() == ReplyStatus::done);
        return true;
    }
    ObjectAddress address{};
    TipprmiSequence<TipprmiAny> parameters;
    if (header.kind != MessageKind::notification || !readAddress(message, address) ||
        !readParameters(message, parameters)) {
        return false;
    }
    ObserverTable::instance().deliver(&peer_, address.view(), parameters);
    return true;
}

void EventLink::confirm(std::uint32_t number, bool isThere)
{
    std::lock_guard const lock(mutex_);
    auto const found = std::find_if(subscriptions_.begin(), subscriptions_.end(),
                                    [number](auto const& entry) { return entry.second.number == number; });
    if (found == subscriptions_.end()) {
        return; // given up meanwhile
    }
    Subscription& subscription = found->second;
    if (!subscription.isRenewal) {
        subscription.state = isThere ? State::confirmed : State::noSuchObject;
        changed_.notify_all();
        return;
    }
    subscription.isRenewal = false;
    settle();
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
    isRunning_ = isStopping_ = isLost_ = false;
    changed_.notify_all();
}

} // namespace trs
