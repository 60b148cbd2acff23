#include "broker/calls/EventLink.h"

#include "broker/calls/Engine.h"
#include "broker/calls/Handlers.h"
#include "broker/calls/Peer.h"
#include "broker/framing/Message.h"
#include "broker/objects/ObserverTable.h"
#include "broker/objects/RunPermission.h"
#include "platform/NmaLogHelper.h"

#include <algorithm>
#include <chrono>

namespace trs {

namespace {

// To look whether more has come costs a system call.
constexpr std::chrono::milliseconds lookInterval{10};
// Until a handler thread is asked for again, when none was to be had.
constexpr std::chrono::milliseconds employInterval{10};
// Others' observers have their turn after so many.
constexpr int mostToldInARow = 64;

} // namespace

EventLink::EventLink(Peer& peer, TimeAndChance timing)
    : peer_(peer), timing_(std::move(timing)), subscriptions_(timing_), link_(peer.dialer())
{
}

EventLink::Answer EventLink::subscribe(OperationKey const& key, Deadline const& deadline, std::string& why)
{
    using State = Subscriptions::State;
    if (Engine::isOnThread()) {
        why = "a handler of an asynchronous call that runs where it was answered waits for nothing";
        return Answer::unreachable;
    }
    if (why = Engine::instance().start(); !why.empty()) {
        return Answer::unreachable;
    }
    RunPermissionPause const waiting;
    std::unique_lock lock(mutex_);
    if (!peer_.isOpen()) {
        why = "the peer was removed";
        return Answer::unreachable;
    }
    Poller& poller = Engine::instance().poller();
    if (number_ == 0) {
        number_ = poller.add(shared_from_this());
    }
    if (auto const message = subscriptions_.add(key)) {
        send(*message);
        flush();
    }
    poller.tell(number_);
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

// Under the lock, like all that follows but for what says otherwise.
void EventLink::leave(OperationKey const& key)
{
    if (auto const message = subscriptions_.remove(key)) {
        send(*message);
        flush();
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
    if (finishMessage(bytes, message.number)) {
        unsent_.insert(unsent_.end(), bytes.data(), bytes.data() + bytes.size());
    } else {
        link_.shutDown(); // the engine sees it
    }
}

void EventLink::flush()
{
    if (!link_.isOpen()) {
        return;
    }
    if (!unsent_.empty()) {
        Channel::Piece const piece{unsent_.data(), unsent_.size()};
        unsent_.erase(unsent_.begin(), unsent_.begin() + static_cast<std::ptrdiff_t>(link_.send({&piece, 1})));
    }
    if (unsent_.empty()) {
        link_.rest();
    }
}

void EventLink::ready(Poller::Events events)
{
    std::lock_guard const lock(mutex_);
    if ((events & Poller::timeIsOver) != 0) {
        timer_.reset();
    }
    if (!link_.isOpen() && link_.advance(events)) {
        link_.isOpen() ? begin() : lose(link_.why());
    } else if (link_.isOpen() && (events & Poller::canReceive) != 0) {
        receive();
    }
    flush();
    auto const attemptAt = subscriptions_.attemptAt();
    if (link_.isNone() && attemptAt && *attemptAt <= timing_.now()) {
        link_.begin(number_, Deadline::current());
    }
    employ();
    setTimer();
}

void EventLink::setTimer()
{
    std::optional<Time> next = employAt_;
    auto const add = [&next](Time time) { next = next ? std::min(*next, time) : time; };
    if (auto const ofLink = link_.nextTime()) {
        add(*ofLink);
    }
    if (auto const attemptAt = subscriptions_.attemptAt(); attemptAt && link_.isNone()) {
        add(*attemptAt);
    }
    if (next != timer_) {
        timer_ = next;
        Engine::instance().poller().setTimer(number_, next);
    }
}

void EventLink::begin()
{
    delivered_ = timing_.date();
    unsent_.clear();
    for (Subscriptions::Message const& message : subscriptions_.begin()) {
        send(message);
    }
}

void EventLink::lose(std::string why)
{
    link_.close();
    unsent_.clear();
    why_ = std::move(why);
    Subscriptions::Gaps const begun = subscriptions_.lose(delivered_);
    isInGap_ = subscriptions_.hasGaps();
    put(begun);
    changed_.notify_all();
}

void EventLink::receive()
{
    bool isMalformed = false;
    if (!link_.receive([this](TipprmiStream& message) { return take(message); }, isMalformed)) {
        if (isMalformed) {
            LogDispatch(4, "what " + peer_.endpoint() + " sent for notifications is malformed");
        }
        lose(isMalformed ? "what it sent for notifications is malformed" : "the connection for notifications was lost");
        return;
    }
    if (inbox_.isFull()) {
        link_.stopReceiving();
    }
    noteDelivered();
}

bool EventLink::take(TipprmiStream& message)
{
    MessageHeader header{};
    if (!readHeader(message, header)) {
        return false;
    }
    if (header.kind == MessageKind::subscriptionReply) {
        put(subscriptions_.confirm(header.number, header.status() == ReplyStatus::done));
        isInGap_ = subscriptions_.hasGaps();
        changed_.notify_all();
        return true;
    }
    ObjectAddress address{};
    TipprmiSequence<TipprmiAny> parameters;
    if (header.kind != MessageKind::notification || !readAddress(message, address) ||
        !readParameters(message, parameters)) {
        return false;
    }
    if (isInGap_) {
        put(subscriptions_.notice(address.view()));
        isInGap_ = subscriptions_.hasGaps();
    }
    inbox_.put(Inbox::Notification{
        OperationKey(TipprmiOID(std::string(address.id), NamespaceId(address.space)), address.classId, address.opIndex),
        std::move(parameters)});
    return true;
}

void EventLink::put(Subscriptions::Gaps const& gaps)
{
    for (NotificationGap const& gap : gaps) {
        inbox_.put(gap);
    }
}

// Has a handler thread come, if there is something for it.
void EventLink::employ()
{
    employAt_.reset();
    if (isDelivering_ || inbox_.isEmpty()) {
        return;
    }
    isDelivering_ = Handlers::submit(shared_from_this());
    if (!isDelivering_) {
        employAt_ = Poller::Clock::now() + employInterval;
    }
}

void EventLink::refuse()
{
    std::lock_guard const lock(mutex_);
    isDelivering_ = false;
    changed_.notify_all();
    Engine::instance().poller().setTimer(number_, Poller::Clock::now() + employInterval);
}

// On a handler thread, without the lock.
void EventLink::run()
{
    std::unique_lock lock(mutex_);
    for (int count = 0; count < mostToldInARow && !inbox_.isEmpty(); ++count) {
        bool const wasFull = inbox_.isFull();
        Inbox::Entry entry = inbox_.take();
        if (wasFull && !inbox_.isFull() && link_.isOpen()) {
            link_.receiveAgain();
        }
        lock.unlock();
        deliver(entry);
        lock.lock();
    }
    isDelivering_ = false;
    noteDelivered();
    changed_.notify_all();
    if (!inbox_.isEmpty()) {
        Engine::instance().poller().tell(number_);
    }
}

// Without the lock, like what follows.
void EventLink::deliver(Inbox::Entry& entry)
{
    if (auto* const notification = std::get_if<Inbox::Notification>(&entry)) {
        ObserverTable::instance().deliver(&peer_, notification->operation.view(), notification->parameters);
    } else {
        tell(std::move(std::get<NotificationGap>(entry)));
    }
}

void EventLink::tell(NotificationGap gap)
{
    gap.peer = peer_.endpoint();
    if (gap.until) {
        LogDispatch(6, gap.peer + " is back and sends notifications again");
    } else {
        LogDispatch(4, "the connection for notifications from " + gap.peer + " is lost");
    }
    tellGap(gap);
}

// Under the lock.
void EventLink::noteDelivered()
{
    if (isDelivering_ || !inbox_.isEmpty() || !link_.isOpen()) {
        return;
    }
    TimeAndChance::Time const now = timing_.now();
    if (now - looked_ >= lookInterval) {
        looked_ = now;
        TimeAndChance::Date const date = timing_.date(); // before looking: what comes behind it may be lost
        if (link_.isDrained()) {
            delivered_ = date;
        }
    }
}

void EventLink::stop()
{
    RunPermissionPause const waiting;
    std::unique_lock lock(mutex_);
    link_.close();
    unsent_.clear();
    subscriptions_.lose(delivered_);
    subscriptions_.clear();
    isInGap_ = false;
    inbox_.clear();
    changed_.notify_all();
    changed_.wait(lock, [this] { return !isDelivering_; });
}

} // namespace trs
