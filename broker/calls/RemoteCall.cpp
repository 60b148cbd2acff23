#include "broker/calls/RemoteCall.h"

#include "broker/Broker.h"
#include "broker/calls/Peer.h"

namespace trs {

namespace {

using Kind = CallFailure::Kind;
using CarriedOut = CallFailure::CarriedOut;

bool fail(TipprmiOID const& oid, std::uint32_t classId, std::uint32_t opIndex, Peer const* peer, Kind kind,
          CarriedOut carriedOut, std::string reason)
{
    reportCallFailure({kind, carriedOut, classId, opIndex, oid, peer != nullptr ? peer->endpoint() : std::string(),
                       std::move(reason)});
    return false;
}

bool failByStatus(TipprmiOID const& oid, std::uint32_t classId, std::uint32_t opIndex, Peer const& peer,
                  ReplyStatus status)
{
    if (status == ReplyStatus::done) {
        return true;
    }
    StatusFailure const failure = failureOf(status);
    return fail(oid, classId, opIndex, &peer, failure.kind, failure.carriedOut, failure.reason);
}

} // namespace

StatusFailure failureOf(ReplyStatus status)
{
    switch (status) {
    case ReplyStatus::noSuchObject:
        return {Kind::noSuchObject, CarriedOut::no, "there is no such object"};
    case ReplyStatus::noSuchOperation:
        return {Kind::noSuchOperation, CarriedOut::no, "the object has no such operation"};
    case ReplyStatus::unreadableRequest:
        return {Kind::refused, CarriedOut::no, "the arguments could not be read there"};
    case ReplyStatus::replyTooLong:
        return {Kind::malformedReply, CarriedOut::yes, "the reply is longer than a message may be"};
    case ReplyStatus::busy:
        return {Kind::busy, CarriedOut::no, "the server has no thread left for it"};
    case ReplyStatus::done:
        break;
    }
    return {Kind::none, CarriedOut::yes, ""};
}

Candidates::Candidates(TreflectObjectStub const& stub) : isExclusive(stub.orb() != nullptr)
{
    if (stub.oid().isNull()) {
        reason = "the proxy is bound to no object";
        return;
    }
    if (isExclusive) {
        peer = &Peer::of(*stub.orb());
        return;
    }
    if (TreflectORB const* const home = stub.home()) {
        Peer& itsHome = Peer::of(*home);
        if (itsHome.isOpen()) {
            peer = &itsHome;
            return;
        }
    }
    inQuestion = Broker::instance().peers();
    if (inQuestion.empty()) {
        reason = "the object is not in this process, which has no peer";
    } else if (inQuestion.size() == 1) {
        peer = inQuestion.front();
    }
}

Route::Route(TreflectObjectStub& stub, Deadline& deadline) : stub_(stub), deadline_(deadline)
{
    Candidates const candidates(stub);
    peer_ = candidates.peer;
    isExclusive_ = candidates.isExclusive;
    reason_ = candidates.reason;
    if (peer_ == nullptr && !candidates.inQuestion.empty()) {
        isSearched_ = true;
        search(candidates.inQuestion);
    }
}

bool Route::search(std::vector<Peer*> const& peers)
{
    bool isSomeoneSilent = false;
    int left = static_cast<int>(peers.size());
    for (Peer* const peer : peers) {
        // One that does not answer must leave time for the others.
        Deadline part(std::chrono::milliseconds(deadline_.remaining() / left--));
        Peer::Failure failure;
        switch (peer->locate(stub_.oid(), part, failure)) {
        case Peer::Located::there:
            peer_ = peer;
            deadline_.startWaiting();
            return true;
        case Peer::Located::unreachable:
            isSomeoneSilent = true;
            break;
        case Peer::Located::notThere:
            break;
        }
    }
    failure_ = isSomeoneSilent ? Kind::notConnected : Kind::noSuchObject;
    reason_ = isSomeoneSilent ? "no peer that answers has the object" : "no peer has the object";
    return false;
}

void Route::rememberAnswer()
{
    if (!isExclusive_ && stub_.home() != peer_) {
        stub_.setHome(peer_);
    }
}

void Route::forget()
{
    if (!isExclusive_) {
        stub_.setHome(nullptr);
    }
}

bool Route::continueElsewhere()
{
    if (isExclusive_) {
        return false;
    }
    stub_.setHome(nullptr);
    if (isSearched_) {
        return false;
    }
    isSearched_ = true;
    std::vector<Peer*> others = Broker::instance().peers();
    std::erase(others, peer_);
    return !others.empty() && search(others);
}

bool remoteCall(TreflectObjectStub& stub, std::uint32_t classId, std::uint32_t opIndex, TipprmiStream& request,
                TipprmiStream& reply)
{
    resetCallFailure();
    Deadline deadline;
    Route route(stub, deadline);
    if (route.peer() == nullptr) {
        return fail(stub.oid(), classId, opIndex, nullptr, route.failure(), CarriedOut::no, route.reason());
    }
    for (;;) {
        MessageHeader header{};
        Peer::Failure failure;
        if (!route.peer()->exchange(request, MessageKind::reply, reply, header, deadline, failure)) {
            if (failure.kind == Kind::notConnected) {
                route.forget();
            }
            return fail(stub.oid(), classId, opIndex, route.peer(), failure.kind, failure.carriedOut,
                        std::move(failure.reason));
        }
        if (header.status() == ReplyStatus::done) [[likely]] {
            route.rememberAnswer();
            reply.setOrigin(route.peer(), route.isExclusive());
            return true;
        }
        if (header.status() != ReplyStatus::noSuchObject || !route.continueElsewhere()) {
            return failByStatus(stub.oid(), classId, opIndex, *route.peer(), header.status());
        }
    }
}

bool tappedCall(Peer& own, TreflectObjectStub const& stub, std::uint32_t classId, std::uint32_t opIndex,
                TipprmiStream& request, TipprmiStream& reply)
{
    resetCallFailure();
    Deadline deadline;
    MessageHeader header{};
    Peer::Failure failure;
    if (!own.exchange(request, MessageKind::reply, reply, header, deadline, failure)) {
        return fail(stub.oid(), classId, opIndex, &own, failure.kind, failure.carriedOut, std::move(failure.reason));
    }
    reply.setOrigin(nullptr, false);
    return failByStatus(stub.oid(), classId, opIndex, own, header.status());
}

bool forwardCall(unsigned long peerNumber, ObjectAddress const& address, TipprmiStream& request, TipprmiStream& reply)
{
    resetCallFailure();
    Deadline deadline;
    TipprmiOID const oid(std::string(address.id), NamespaceId(address.space));
    Peer* const peer = Broker::instance().peer(peerNumber);
    if (peer == nullptr) {
        return fail(oid, address.classId, address.opIndex, nullptr, Kind::notConnected, CarriedOut::no,
                    "no broker has the number " + std::to_string(peerNumber));
    }
    MessageHeader header{};
    Peer::Failure failure;
    if (!peer->exchange(request, MessageKind::reply, reply, header, deadline, failure)) {
        return fail(oid, address.classId, address.opIndex, peer, failure.kind, failure.carriedOut,
                    std::move(failure.reason));
    }
    reply.setOrigin(peer, true);
    return failByStatus(oid, address.classId, address.opIndex, *peer, header.status());
}

bool isReachable(TreflectObjectStub& stub)
{
    resetCallFailure();
    Deadline deadline;
    Route route(stub, deadline);
    auto const fail = [&](Kind kind, std::string reason) {
        std::string const asked = route.peer() != nullptr ? route.peer()->endpoint() : std::string();
        recordCallFailure({kind, CarriedOut::no, 0, 0, stub.oid(), asked, std::move(reason)});
        return false;
    };
    if (route.peer() == nullptr) {
        return fail(route.failure(), route.reason());
    }
    Peer::Failure failure;
    switch (route.peer()->locate(stub.oid(), deadline, failure)) {
    case Peer::Located::there:
        route.rememberAnswer();
        return true;
    case Peer::Located::unreachable:
        route.forget();
        return fail(failure.kind, std::move(failure.reason));
    case Peer::Located::notThere:
        break;
    }
    if (!route.continueElsewhere()) {
        return fail(Kind::noSuchObject, "there is no such object");
    }
    route.rememberAnswer();
    return true;
}

void noteUnreadableReply(TreflectObjectStub const& stub, std::uint32_t classId, std::uint32_t opIndex)
{
    Peer const* const peer = stub.orb() != nullptr    ? &Peer::of(*stub.orb())
                             : stub.home() != nullptr ? &Peer::of(*stub.home())
                                                      : nullptr;
    bool const isElsewhere = stub.localServer() == nullptr && peer != nullptr;
    recordCallFailure({Kind::malformedReply, CarriedOut::yes, classId, opIndex, stub.oid(),
                       isElsewhere ? peer->endpoint() : std::string(), "the reply is shorter than the operation's"});
}

bool refuseUnprepared(TreflectObjectStub const& stub)
{
    resetCallFailure();
    return fail(stub.oid(), 0, 0, nullptr, Kind::refused, CarriedOut::no, "the request was not prepared");
}

} // namespace trs
