#include "platform/ClientCallHelper.h"

#include "broker/CallFailure.h"
#include "broker/calls/RemoteCall.h"
#include "broker/calls/TappedRoad.h"
#include "broker/framing/Message.h"
#include "broker/objects/Execution.h"
#include "platform/TreflectServerObject.h"
#include "rmi/ParamHooks.h"
#include "rmi/TipprmiAny.h"
#include "rmi/TipprmiSequence.h"

ClientCallHookBaseV::~ClientCallHookBaseV() = default;

void ClientCallHookBaseV::insertResult(TipprmiSequence<TipprmiAny>& list) const { generateParams(list); }

void ClientCallHookBaseV::evaluateResponse(TipprmiStream&) const {}

void generateParamSeq(TipprmiSequence<TipprmiAny>&) {}

void ClientCallHelper(ClientCallHookBaseV const& hook, InParamHook const& in, OutParamHook const& out,
                      TreflectObjectStub& stub, TreflectServerObject* server, unsigned long classId,
                      unsigned long opIndex, bool flag)
{
    bool const isHere = server != nullptr || stub.localServer() != nullptr;
    trs::Peer* const own = isHere ? trs::TappedRoad::by(stub) : nullptr;
    if (server != nullptr && own == nullptr) {
        hook.call();
        if (server->isObserved(classId, opIndex)) {
            TipprmiSequence<TipprmiAny> parameters;
            hook.insertResult(parameters);
            server->notifyObservers(classId, opIndex, parameters);
        }
        return;
    }

    auto const wireClass = static_cast<std::uint32_t>(classId);
    auto const wireIndex = static_cast<std::uint32_t>(opIndex);
    TipprmiStream request(100);
    TipprmiStream reply(100);
    if (isHere && own == nullptr) {
        in.handleParams(request);
        if (!trs::executeHere(stub, flag, wireClass, wireIndex, request, reply)) {
            return;
        }
        reply.rewind();
    } else {
        trs::beginRequest(request, flag, stub.oid(), classId, opIndex);
        in.handleParams(request);
        bool const isDelivered = own != nullptr ? trs::tappedCall(*own, stub, wireClass, wireIndex, request, reply)
                                                : trs::remoteCall(stub, wireClass, wireIndex, request, reply);
        if (!isDelivered) {
            return;
        }
    }
    hook.evaluateResponse(reply);
    out.handleParams(reply);
    if (reply.hasUnmarshallingFailed()) {
        reply.printUnmarshallError(classId, opIndex);
        trs::noteUnreadableReply(stub, wireClass, wireIndex);
    }
}
