#include "broker/serving/Session.h"

#include "broker/objects/Execution.h"
#include "broker/objects/RunPermission.h"
#include "broker/objects/SubscriberTable.h"

#include <chrono>

namespace trs {

namespace {

constexpr std::size_t mostSubscribed = std::size_t{1024} * 1024; // bytes of one connection
constexpr std::size_t subscriptionSize = 64;                     // besides the identifier

// The status that the reply has in the end.
ReplyStatus finishReply(TipprmiStream& reply, ReplyStatus status, std::uint32_t number)
{
    if (status != ReplyStatus::done) {
        reduceReply(reply, status);
    }
    if (!finishMessage(reply, number)) {
        status = ReplyStatus::replyTooLong;
        reduceReply(reply, status);
        finishMessage(reply, number);
    }
    return status;
}

} // namespace

Session::Session(Connection& connection, Outlet::Owner& owner, std::string const& endpoint, ServerTap* tap,
                 RepeatedLines& log)
    : connection_(connection), endpoint_(endpoint), tap_(tap), log_(log),
      outlet_(std::make_shared<Outlet>(connection, owner, log, endpoint)), lastStub_(StubTable::unbound())
{
}

void Session::end()
{
    if (isSubscribed()) {
        SubscriberTable::instance().removeAll(*outlet_);
    }
    outlet_->close();
}

void Session::logClosed(char const* why, int severity) { log_.tell(severity, Outlet::closing(endpoint_) + why); }

Session::Greeted Session::greet()
{
    switch (connection_.receiveBytesNow(greetingLeft_)) {
    case Connection::Received::message:
        break;
    case Connection::Received::timedOut:
        return Greeted::notYet;
    default:
        return Greeted::no;
    }
    GreetingCheck const check = checkGreeting(greeting_.data(), greeting_.size());
    if (check != GreetingCheck::good && check != GreetingCheck::otherVersion) {
        logClosed("what connected is no broker");
        return Greeted::no;
    }
    // The other side reads ours even if it is not to be served: it can tell its user why.
    Greeting const own = makeGreeting();
    Channel::Piece const whole{own.data(), own.size()};
    bool const isSent = connection_.sendSome(std::span(&whole, 1)) == own.size();
    if (check == GreetingCheck::otherVersion) {
        logClosed("the broker that connected speaks another version");
        return Greeted::no;
    }
    return isSent ? Greeted::yes : Greeted::no;
}

bool Session::answer(TipprmiStream& message, Turn const& turn)
{
    MessageHeader header{};
    turn.tally.countIn(message.size());
    if (readHeader(message, header)) {
        if (header.kind == MessageKind::request) [[likely]] {
            return answerRequest(header, message, turn);
        }
        ObjectAddress address{};
        bool const isWhole = readAddress(message, address) && message.available() == 0;
        if (isWhole && header.kind == MessageKind::locate && address.classId == 0 && address.opIndex == 0) {
            return answerLocate(header, address, turn);
        }
        if (isWhole && header.kind == MessageKind::subscribe) {
            return answerSubscribe(header, address, turn);
        }
        if (isWhole && header.kind == MessageKind::unsubscribe) {
            if (SubscriberTable::instance().remove(address.view(), *outlet_)) {
                subscribed_ -= subscriptionSize + address.id.size();
            }
            return true;
        }
    }
    logClosed("a malformed message came");
    return false;
}

bool Session::answerRequest(MessageHeader const& header, TipprmiStream& request, Turn const& turn)
{
    ObjectAddress address{};
    if (!readAddress(request, address)) {
        logClosed("a malformed message came");
        return false;
    }
    turn.reply.clear();
    beginMessage(turn.reply, MessageKind::reply);
    ReplyStatus status = ReplyStatus::busy;
    if (turn.way == Way::served) [[likely]] {
        if (tap_ != nullptr) [[unlikely]] {
            return answerTapped(header, address, request, turn);
        }
        status = execute(header.detail != 0, address, request, turn.reply);
    }
    turn.tally.count(finishReply(turn.reply, status, header.number));
    return send(turn, turn.isMoreToCome);
}

bool Session::answerTapped(MessageHeader const& header, ObjectAddress const& address, TipprmiStream& request,
                           Turn const& turn)
{
    TipprmiStream& reply = turn.reply;
    std::unique_ptr<TappedCall> const call = tap_->begin(address, request);
    ReplyStatus status = ReplyStatus::done;
    if (call->isExecuted(reply, status)) {
        UntappedCalls const byTheObject;
        status = execute(header.detail != 0, address, request, reply);
    }
    turn.tally.count(finishReply(reply, status, header.number));
    turn.tally.countOut(reply.size());
    if (!outlet_->flush()) {
        return false;
    }
    Outlet::Answer answer(*outlet_);
    bool const isAnswered = call->answer(
        reply, [&answer](unsigned char const* bytes, std::size_t length) { return answer.send(bytes, length); });
    if (!isAnswered) {
        outlet_->abandon(); // perhaps in the middle of the answer
    }
    return isAnswered;
}

ReplyStatus Session::execute(bool flag, ObjectAddress const& address, TipprmiStream& request, TipprmiStream& reply)
{
    TipprmiOID const& last = lastStub_->oid();
    if (last.getIdString() != address.id || last.getNamespace().value() != address.space) {
        auto const found = StubTable::instance().findActive(NamespaceId(address.space), address.id);
        if (!found) {
            return ReplyStatus::noSuchObject;
        }
        lastStub_ = *found;
    }
    RunPermissionScope const running;
    // Looked for under the run permission, which whoever destroys an object holds.
    TreflectServerObject* const server = lastStub_->localServer();
    if (server == nullptr) {
        return ReplyStatus::noSuchObject;
    }
    switch (Execution::run(static_cast<TipprmiObjectSkeleton&>(*server), flag, address.classId, address.opIndex,
                           request, reply)) {
    case Execution::Outcome::noSuchOperation:
        return ReplyStatus::noSuchOperation;
    case Execution::Outcome::unreadableRequest:
        return ReplyStatus::unreadableRequest;
    case Execution::Outcome::done:
        break;
    }
    return ReplyStatus::done;
}

bool Session::answerLocate(MessageHeader const& header, ObjectAddress const& address, Turn const& turn)
{
    bool const isHere = StubTable::instance().findActive(NamespaceId(address.space), address.id).has_value();
    TipprmiStream& reply = turn.reply;
    reply.clear();
    beginMessage(reply, MessageKind::locateReply);
    reduceReply(reply, isHere ? ReplyStatus::done : ReplyStatus::noSuchObject);
    finishMessage(reply, header.number);
    return send(turn, turn.isMoreToCome);
}

bool Session::answerSubscribe(MessageHeader const& header, ObjectAddress const& address, Turn const& turn)
{
    outlet_->admitOthers();
    OperationKey const key(TipprmiOID(std::string(address.id), NamespaceId(address.space)), address.classId,
                           address.opIndex);
    SubscriberTable::Added const added = SubscriberTable::instance().add(key, outlet_, header.detail != 0);
    if (added == SubscriberTable::Added::yes) {
        subscribed_ += subscriptionSize + address.id.size();
        if (subscribed_ > mostSubscribed) {
            logClosed("its subscriptions take too much memory");
            return false;
        }
    }
    TipprmiStream& reply = turn.reply;
    reply.clear();
    beginMessage(reply, MessageKind::subscriptionReply);
    reduceReply(reply, added == SubscriberTable::Added::noSuchObject ? ReplyStatus::noSuchObject : ReplyStatus::done);
    finishMessage(reply, header.number);
    return send(turn, false); // at once: a notification may follow
}

bool Session::send(Turn const& turn, bool isMoreToCome)
{
    turn.tally.countOut(turn.reply.size());
    return outlet_->answer(turn.reply, isMoreToCome);
}

} // namespace trs
