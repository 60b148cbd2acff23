#include "broker/serving/Session.h"

#include "broker/objects/SubscriberTable.h"
#include "broker/serving/Request.h"

namespace trs {

namespace {

constexpr std::size_t mostSubscribed = std::size_t{1024} * 1024; // bytes of one connection
constexpr std::size_t subscriptionSize = 64;                     // besides the identifier

} // namespace

Session::Session(Connection& connection, Outlet::Owner& owner, TappedExchange::Host& host, std::string const& endpoint,
                 ServerTap* tap, RepeatedLines& log)
    : connection_(connection), host_(host), endpoint_(endpoint), tap_(tap), log_(log),
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
    if (tap_ != nullptr && turn.way == Way::served) [[unlikely]] {
        return answerTapped(header, request);
    }
    ObjectAddress address{};
    if (!readAddress(request, address)) {
        logClosed("a malformed message came");
        return false;
    }
    turn.reply.clear();
    beginMessage(turn.reply, MessageKind::reply);
    ReplyStatus const status = turn.way == Way::served
                                   ? executeRequest(lastStub_, header.detail != 0, address, request, turn.reply)
                                   : ReplyStatus::busy;
    turn.tally.count(finishReply(turn.reply, status, header.number));
    return send(turn, turn.isMoreToCome);
}

bool Session::answerTapped(MessageHeader const& header, TipprmiStream const& request)
{
    outlet_->flush();
    auto const exchange = std::make_shared<TappedExchange>(host_, header, request);
    if (!exchange->begin(*tap_)) {
        logClosed("a malformed message came");
        return false;
    }
    return exchange->goOn();
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
