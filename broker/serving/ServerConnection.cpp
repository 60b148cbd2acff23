#include "broker/serving/ServerConnection.h"

#include "broker/objects/Execution.h"
#include "broker/objects/RunPermission.h"
#include "broker/objects/SubscriberTable.h"
#include "platform/NmaLogHelper.h"

namespace trs {

namespace {

// Streams that have held a longer message are not kept.
constexpr std::size_t greatestKeptStorage = 65536;
constexpr std::size_t mostSubscriptions = 16384;

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

ServerConnection::ServerConnection(std::unique_ptr<Channel> channel, std::string endpoint, ServerTap* tap)
    : endpoint_(std::move(endpoint)), tap_(tap), connection_(std::move(channel)), lastStub_(StubTable::unbound())
{
}

ServerConnection::~ServerConnection()
{
    if (sink_ != nullptr) {
        sink_->close();
        SubscriberTable::instance().removeAll(*sink_);
    }
}

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
            if (!answer(message, reply)) {
                return;
            }
            break;
        case Connection::Received::malformed:
            logMalformed();
            return;
        case Connection::Received::timedOut:
            LogDispatch(4, "a connection to " + endpoint_ + " is closed: a message that was begun did not end in time");
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
        LogDispatch(6, "a connection to " + endpoint_ + " is closed: no greeting came in time");
        return false;
    default:
        return false;
    }
    GreetingCheck const check = checkGreeting(greeting);
    if (check == GreetingCheck::foreign) {
        LogDispatch(4, "a connection to " + endpoint_ + " is closed: what connected is no broker");
        return false;
    }
    // A broker of another version is told this one's.
    greeting = makeGreeting();
    bool const isSent = connection_.send(greeting.data(), greeting.size(), deadline) == Connection::Sent::all;
    if (check == GreetingCheck::otherVersion) {
        LogDispatch(4, "a connection to " + endpoint_ + " is closed: the broker that connected speaks another version");
        return false;
    }
    return isSent;
}

void ServerConnection::logMalformed() const
{
    LogDispatch(4, "a connection to " + endpoint_ + " is closed: a malformed message came");
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
            if (sink_ != nullptr) {
                SubscriberTable::instance().remove(address.view(), *sink_);
            }
            return true;
        }
    }
    logMalformed();
    return false;
}

bool ServerConnection::answerRequest(MessageHeader const& header, TipprmiStream& request, TipprmiStream& reply)
{
    ObjectAddress address{};
    if (!readAddress(request, address)) {
        logMalformed();
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
        status = execute(header.detail != 0, address, request, reply);
    }
    finishReply(reply, status, header.number);
    return call->answer(reply, [this](unsigned char const* bytes, std::size_t length) {
        Deadline deadline;
        return connection_.send(bytes, length, deadline) == Connection::Sent::all;
    });
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
    if (++subscriptions_ > mostSubscriptions) {
        LogDispatch(4, "a connection to " + endpoint_ + " is closed: it subscribed too often");
        return false;
    }
    if (sink_ == nullptr) {
        sink_ = std::make_shared<EventSink>(connection_);
    }
    OperationKey const key(TipprmiOID(std::string(address.id), NamespaceId(address.space)), address.classId,
                           address.opIndex);
    bool const isThere = SubscriberTable::instance().add(key, sink_, header.detail != 0);
    reply.clear();
    beginMessage(reply, MessageKind::subscriptionReply);
    reduceReply(reply, isThere ? ReplyStatus::done : ReplyStatus::noSuchObject);
    finishMessage(reply, header.number);
    return send(reply);
}

bool ServerConnection::send(TipprmiStream const& message)
{
    if (sink_ != nullptr) {
        sink_->send(message); // notifications go over the same connection
        return true;
    }
    Deadline deadline;
    if (connection_.send(message.data(), message.size(), deadline) == Connection::Sent::all) {
        return true;
    }
    if (deadline.remaining() == 0) {
        LogDispatch(4, "a connection to " + endpoint_ + " is closed: its reply was not taken in time");
    }
    return false;
}

} // namespace trs
