#include "broker/serving/ServerConnection.h"

#include "broker/objects/Execution.h"
#include "broker/objects/RunPermission.h"
#include "broker/objects/SubscriberTable.h"

#include <chrono>

namespace trs {

namespace {

// Streams that have held a longer message are not kept.
constexpr std::size_t greatestKeptStorage = 65536;
constexpr std::size_t mostSubscribed = std::size_t{1024} * 1024; // bytes of one connection
constexpr std::size_t subscriptionSize = 64;                     // besides the identifier

void releaseStorage(TipprmiStream& stream)
{
    if (stream.capacity() > greatestKeptStorage) {
        std::destroy_at(&stream);
        std::construct_at(&stream, 100);
    }
}

void finishReply(TipprmiStream& reply, ReplyStatus status, std::uint32_t number)
{
    if (status != ReplyStatus::done) {
        reduceReply(reply, status);
    }
    if (!finishMessage(reply, number)) {
        reduceReply(reply, ReplyStatus::replyTooLong);
        finishMessage(reply, number);
    }
}

} // namespace

ServerConnection::ServerConnection(std::unique_ptr<Channel> channel, std::string const& endpoint, ServerTap* tap,
                                   RepeatedLines& log, TimeAndChance const& timing)
    : begin_("a connection to " + endpoint + " is closed: "), tap_(tap), log_(log), timing_(timing),
      connection_(std::move(channel)), lastStub_(StubTable::unbound()),
      outlet_(std::make_shared<Outlet>(connection_, log, begin_)), restsSince_(restClock())
{
}

std::int64_t ServerConnection::restClock() const
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(timing_.now().time_since_epoch()).count();
}

ServerConnection::~ServerConnection()
{
    SubscriberTable::instance().removeAll(*outlet_);
    outlet_->close();
}

void ServerConnection::endReceiving()
{
    isEnding_ = true;
    connection_.endReceiving();
}

bool ServerConnection::dismiss(std::int64_t since)
{
    if (!restsSince_.compare_exchange_strong(since, dismissed)) {
        return false;
    }
    connection_.shutDown();
    return true;
}

void ServerConnection::logClosed(std::string const& why, int severity) { log_.tell(severity, begin_ + why); }

void ServerConnection::serve()
{
    if (!greet()) {
        return;
    }
    TipprmiStream message(100);
    TipprmiStream reply(100);
    for (;;) {
        switch (connection_.receiveNext(message)) {
        case Connection::Received::message:
            if (!answerNext(message, reply)) {
                return;
            }
            break;
        case Connection::Received::malformed:
            logClosed("a malformed message came");
            return;
        case Connection::Received::timedOut:
            logClosed("a message that was begun did not end in time");
            return;
        case Connection::Received::closed:
        case Connection::Received::lost:
            return;
        }
        releaseStorage(message);
        releaseStorage(reply);
    }
}

bool ServerConnection::greet()
{
    Deadline deadline;
    Greeting greeting{};
    switch (connection_.receiveBytes(greeting.data(), greeting.size(), deadline)) {
    case Connection::Received::message:
        break;
    case Connection::Received::timedOut:
        logClosed("no greeting came in time", 6);
        return false;
    default:
        return false;
    }
    GreetingCheck const check = checkGreeting(greeting.data(), greeting.size());
    if (check != GreetingCheck::good && check != GreetingCheck::otherVersion) {
        logClosed("what connected is no broker");
        return false;
    }
    // A broker of another version is told this one's.
    greeting = makeGreeting();
    bool const isSent = connection_.send(greeting.data(), greeting.size(), deadline) == Connection::Sent::all;
    if (check == GreetingCheck::otherVersion) {
        logClosed("the broker that connected speaks another version");
        return false;
    }
    return isSent;
}

// Unless the connection was dismissed while the message came.
bool ServerConnection::answerNext(TipprmiStream& message, TipprmiStream& reply)
{
    if (restsSince_.exchange(busy) == dismissed || isEnding_) {
        return false;
    }
    bool const isAnswered = answer(message, reply);
    restsSince_ = restClock();
    return isAnswered;
}

bool ServerConnection::answer(TipprmiStream& message, TipprmiStream& reply)
{
    MessageHeader header{};
    if (readHeader(message, header)) {
        if (header.kind == MessageKind::request) [[likely]] {
            return answerRequest(header, message, reply);
        }
        ObjectAddress address{};
        bool const isWhole = readAddress(message, address) && message.available() == 0;
        if (isWhole && header.kind == MessageKind::locate && address.classId == 0 && address.opIndex == 0) {
            return answerLocate(header, address, reply);
        }
        if (isWhole && header.kind == MessageKind::subscribe) {
            return answerSubscribe(header, address, reply);
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

bool ServerConnection::answerRequest(MessageHeader const& header, TipprmiStream& request, TipprmiStream& reply)
{
    ObjectAddress address{};
    if (!readAddress(request, address)) {
        logClosed("a malformed message came");
        return false;
    }
    reply.clear();
    beginMessage(reply, MessageKind::reply);
    if (tap_ != nullptr) [[unlikely]] {
        return answerTapped(header, address, request, reply);
    }
    finishReply(reply, execute(header.detail != 0, address, request, reply), header.number);
    return send(reply);
}

bool ServerConnection::answerTapped(MessageHeader const& header, ObjectAddress const& address, TipprmiStream& request,
                                    TipprmiStream& reply)
{
    std::unique_ptr<TappedCall> const call = tap_->begin(address, request);
    ReplyStatus status = ReplyStatus::done;
    if (call->isExecuted(reply, status)) {
        UntappedCalls const byTheObject;
        status = execute(header.detail != 0, address, request, reply);
    }
    finishReply(reply, status, header.number);
    Outlet::Answer answer(*outlet_);
    bool const isAnswered = call->answer(
        reply, [&answer](unsigned char const* bytes, std::size_t length) { return answer.send(bytes, length); });
    if (!isAnswered) {
        outlet_->abandon(); // perhaps in the middle of the answer
    }
    return isAnswered;
}

ReplyStatus ServerConnection::execute(bool flag, ObjectAddress const& address, TipprmiStream& request,
                                      TipprmiStream& reply)
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

bool ServerConnection::answerLocate(MessageHeader const& header, ObjectAddress const& address, TipprmiStream& reply)
{
    bool const isHere = StubTable::instance().findActive(NamespaceId(address.space), address.id).has_value();
    reply.clear();
    beginMessage(reply, MessageKind::locateReply);
    reduceReply(reply, isHere ? ReplyStatus::done : ReplyStatus::noSuchObject);
    finishMessage(reply, header.number);
    return send(reply);
}

bool ServerConnection::answerSubscribe(MessageHeader const& header, ObjectAddress const& address, TipprmiStream& reply)
{
    outlet_->admitNotifications();
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
    reply.clear();
    beginMessage(reply, MessageKind::subscriptionReply);
    reduceReply(reply, added == SubscriberTable::Added::noSuchObject ? ReplyStatus::noSuchObject : ReplyStatus::done);
    finishMessage(reply, header.number);
    return send(reply);
}

bool ServerConnection::send(TipprmiStream const& message)
{
    return Outlet::Answer(*outlet_).send(message.data(), message.size());
}

} // namespace trs
