#include "platform/TipprmiObjectClient.h"

#include "broker/Broker.h"
#include "broker/CallFailure.h"
#include "broker/calls/RemoteCall.h"
#include "broker/calls/TappedRoad.h"
#include "broker/framing/Message.h"
#include "broker/objects/Execution.h"
#include "broker/objects/StubTable.h"
#include "platform/TipprmiObjectSkeleton.h"

namespace {

TreflectStubRef stubOf(TipprmiObjectSkeleton const* skeleton)
{
    return skeleton != nullptr ? TreflectStubRef(skeleton->stub()) : trs::StubTable::unbound();
}

// Carries a prepared request to an object of this process, and gives the reply the form that one from elsewhere has.
bool dispatchHere(TreflectObjectStub& stub, bool flag, trs::ObjectAddress const& address, TipprmiStream& request,
                  TipprmiStream& reply)
{
    if (trs::Peer* const own = trs::TappedRoad::by(stub)) {
        return trs::tappedCall(*own, stub, address.classId, address.opIndex, request, reply);
    }
    reply.clear();
    trs::beginMessage(reply, trs::MessageKind::reply);
    reply.setOrigin(nullptr, false);
    bool const isDone = trs::executeHere(stub, flag, address.classId, address.opIndex, request, reply);
    reply.rewind(trs::messageHeaderSize);
    return isDone;
}

} // namespace

TipprmiObjectClient::TipprmiObjectClient(TipprmiObjectSkeleton const* skeleton) : stub_(stubOf(skeleton)) {}

TipprmiObjectClient::TipprmiObjectClient(TipprmiOID const& oid) : stub_(trs::StubTable::instance().find(nullptr, oid))
{
}

TipprmiObjectClient::TipprmiObjectClient() : stub_(trs::StubTable::unbound()) {}

TipprmiObjectClient::~TipprmiObjectClient() = default;

bool TipprmiObjectClient::forwardMsg(TreflectOrbId const& orb, bool flag, TipprmiStream& request,
                                     TipprmiStream& reply) const
{
    trs::ObjectAddress address;
    if (!trs::readPreparedRequest(request, address)) {
        return trs::refuseUnprepared(*stub_.get());
    }
    if (orb.value() == 0) {
        auto const here = trs::StubTable::instance().findActive(NamespaceId(address.space), address.id);
        return dispatchHere(here ? *here->get() : *trs::StubTable::unbound().get(), flag, address, request, reply);
    }
    return trs::forwardCall(orb.value(), address, request, reply);
}

bool TipprmiObjectClient::dispatch(bool flag, unsigned long classId, unsigned long opIndex, TipprmiStream& request,
                                   TipprmiStream& reply) const
{
    trs::ObjectAddress address;
    if (!trs::readPreparedRequest(request, address) || address.classId != classId || address.opIndex != opIndex) {
        return trs::refuseUnprepared(*stub_.get());
    }
    if (stub_->localServer() != nullptr) {
        return dispatchHere(*stub_.get(), flag, address, request, reply);
    }
    return trs::remoteCall(*stub_.get(), address.classId, address.opIndex, request, reply);
}

void TipprmiObjectClient::connect(TreflectORB const* orb, TipprmiOID const& oid)
{
    stub_ = trs::StubTable::instance().find(orb, oid);
}

void TipprmiObjectClient::connect(TipprmiObjectSkeleton* skeleton) { stub_ = stubOf(skeleton); }

TipprmiObjectSkeleton* TipprmiObjectClient::getServer() const
{
    return static_cast<TipprmiObjectSkeleton*>(stub_->localServer());
}

bool TipprmiObjectClient::isConnected() const
{
    if (stub_->localServer() == nullptr || getOID().isNull()) {
        return trs::isReachable(*stub_.get());
    }
    trs::resetCallFailure();
    return true;
}

TipprmiStream& TipprmiObjectClient::prepareRequestStream_(bool flag, unsigned long classId, unsigned long opIndex,
                                                          TipprmiStream& request) const
{
    request.clear();
    trs::beginRequest(request, flag, getOID(), classId, opIndex);
    return request;
}

TipprmiStream& TipprmiObjectClient::prepareResponseStream_(bool, TipprmiStream& reply) const
{
    reply.rewind(trs::messageHeaderSize);
    return reply;
}

bool TipprmiObjectClient::isSameObject(TipprmiObjectClient const& other) const
{
    TreflectORB const* const orb = stub_->orb();
    TreflectORB const* const otherOrb = other.stub_->orb();
    return !getOID().isNull() && getOID() == other.getOID() &&
           (orb == nullptr || otherOrb == nullptr || orb == otherOrb);
}
