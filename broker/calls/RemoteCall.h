// Calls to objects of other processes.
#pragma once

#include "broker/CallFailure.h"
#include "broker/Deadline.h"
#include "broker/framing/Message.h"
#include "platform/TreflectObjectStub.h"

#include <vector>

class TipprmiStream;

namespace trs {

class Peer;

// Which peer to ask for an object: the one that its proxy is connected to; else the one that last answered for it;
// else the only one; else the first that says it has the object.
struct Candidates {
    explicit Candidates(TreflectObjectStub const& stub);

    Peer* peer = nullptr;          // the one to ask
    std::vector<Peer*> inQuestion; // else those that may have it, in their order
    bool isExclusive;              // references in the peer's replies lead to that peer only
    char const* reason = "";       // else there is none
};

// What a reply of another status than `done` says of its call.
struct StatusFailure {
    CallFailure::Kind kind;
    CallFailure::CarriedOut carriedOut;
    char const* reason;
};
StatusFailure failureOf(ReplyStatus status);

class Route {
public:
    Route(TreflectObjectStub& stub, Deadline& deadline);

    // Null when there is none to ask; failure() tells why.
    Peer* peer() const { return peer_; }
    CallFailure::Kind failure() const { return failure_; }
    char const* reason() const { return reason_; }
    bool isExclusive() const { return isExclusive_; }

    void rememberAnswer();
    // The peer has not got the object. Whether another one, which peer() then is, says it has.
    bool continueElsewhere();
    // The peer could not be reached: the next call looks for the object again.
    void forget();

private:
    bool search(std::vector<Peer*> const& peers);

    TreflectObjectStub& stub_;
    Deadline& deadline_;
    Peer* peer_ = nullptr;
    bool isExclusive_;
    bool isSearched_ = false;
    CallFailure::Kind failure_ = CallFailure::Kind::notConnected;
    char const* reason_ = "";
};

// Sends a begun request to the process that has the object and receives the reply, its reader at the result. False,
// with the failure recorded and logged, when the call was not delivered.
bool remoteCall(TreflectObjectStub& stub, std::uint32_t classId, std::uint32_t opIndex, TipprmiStream& request,
                TipprmiStream& reply);
// The same for an object of this process, over a connection to itself (TappedRoad).
bool tappedCall(Peer& own, TreflectObjectStub const& stub, std::uint32_t classId, std::uint32_t opIndex,
                TipprmiStream& request, TipprmiStream& reply);
// The same to the peer of that number, whatever the request's object.
bool forwardCall(unsigned long peerNumber, ObjectAddress const& address, TipprmiStream& request, TipprmiStream& reply);
// Whether a peer says now that it has the object. If not, why is recorded, and not logged: it was a question.
bool isReachable(TreflectObjectStub& stub);

// A delivered reply turned out shorter than the operation's.
void noteUnreadableReply(TreflectObjectStub const& stub, std::uint32_t classId, std::uint32_t opIndex);
// A request that prepareRequestStream_() did not begin. False.
bool refuseUnprepared(TreflectObjectStub const& stub);

} // namespace trs
