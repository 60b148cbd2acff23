#include "platform/TipprmiObjectClient.h"

#include "platform/TipprmiObjectSkeleton.h"
#include "platform/host/Broker.h"
#include "platform/host/CallFailure.h"
#include "platform/host/Execution.h"
#include "platform/host/Message.h"
#include "platform/host/RemoteCall.h"
#include "platform/host/StubTable.h"

namespace {

TreflectStubRef stubOf(TipprmiObjectSkeleton const* skeleton)
{
    return skeleton != nullptr ? TreflectStubRef(skeleton->stub()) : host::StubTable::unbound();
}

// Carries a prepared request to an object of this process, and gives the reply the form that one from elsewhere has.
bool dispatchHere(TreflectObjectStub const& stub, bool flag, host::ObjectAddress const& address, TipprmiStream& request,
                  TipprmiStream& reply)
{
    reply.clear();
    host::beginMessage(reply, host::MessageKind::reply);
    reply.setOrigin(nullptr, false);
    bool const isDone = host::executeHere(stub, flag, address.classId, address.opIndex, request, reply);
    reply.rewind(host::messageHeaderSize);
    return isDone;
}

} // namespace

TipprmiObjectClient::TipprmiObjectClient(TipprmiObjectSkeleton const* skeleton) : stub_(stubOf(skeleton)) {}

TipprmiObjectClient::TipprmiObjectClient(TipprmiOID const& oid) : stub_(host::StubTable::instance().find(nullptr, oid))
{
}

TipprmiObjectClient::TipprmiObjectClient() : stub_(host::StubTable::unbound()) {}

TipprmiObjectClient::~TipprmiObjectClient() = default;

bool TipprmiObjectClient::forwardMsg(TreflectOrbId const& orb, bool flag, TipprmiStream& request,
                                     TipprmiStream& reply) const
{
    host::ObjectAddress address;
    if (!host::readPreparedRequest(request, address)) {
        return host::refuseUnprepared(*stub_.get());
    }
    if (orb.value() == 0) {
        auto const here = host::StubTable::instance().findActive(NamespaceId(address.space), address.id);
        return dispatchHere(here ? *here->get() : *host::StubTable::unbound().get(), flag, address, request, reply);
    }
    return host::forwardCall(orb.value(), address, request, reply);
}

bool TipprmiObjectClient::dispatch(bool flag, unsigned long classId, unsigned long opIndex, TipprmiStream& request,
                                   TipprmiStream& reply) const
{
    host::ObjectAddress address;
    if (!host::readPreparedRequest(request, address) || address.classId != classId || address.opIndex != opIndex) {
        return host::refuseUnprepared(*stub_.get());
    }
    if (stub_->localServer() != nullptr) {
        return dispatchHere(*stub_.get(), flag, address, request, reply);
    }
    return host::remoteCall(*stub_.get(), address.classId, address.opIndex, request, reply);
}

void TipprmiObjectClient::connect(TreflectORB const* orb, TipprmiOID const& oid)
{
    stub_ = host::StubTable::instance().find(orb, oid);
}

void TipprmiObjectClient::connect(TipprmiObjectSkeleton* skeleton) { stub_ = stubOf(skeleton); }

TipprmiObjectSkeleton* TipprmiObjectClient::getServer() const
{
    return static_cast<TipprmiObjectSkeleton*>(stub_->localServer());
}

bool TipprmiObjectClient::isConnected() const
{
    return !getOID().isNull() && (stub_->localServer() != nullptr || host::isReachable(*stub_.get()));
}

TipprmiStream& TipprmiObjectClient::prepareRequestStream_(bool flag, unsigned long classId, unsigned long opIndex,
                                                          TipprmiStream& request) const
{
    request.clear();
    host::beginRequest(request, flag, getOID(), classId, opIndex);
    return request;
}

TipprmiStream& TipprmiObjectClient::prepareResponseStream_(bool, TipprmiStream& reply) const
{
    reply.rewind(host::messageHeaderSize);
    return reply;
}

bool TipprmiObjectClient::isSameObject(TipprmiObjectClient const& other) const
{
    TreflectORB const* const orb = stub_->orb();
    TreflectORB const* const otherOrb = other.stub_->orb();
    return !getOID().isNull() && getOID() == other.getOID() &&
           (orb == nullptr || otherOrb == nullptr || orb == otherOrb);
}
