#include "platform/ClientCallHelper.h"

#include "platform/TreflectServerObject.h"
#include "platform/host/CallFailure.h"
#include "platform/host/Execution.h"
#include "platform/host/Message.h"
#include "platform/host/RemoteCall.h"
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
    if (server != nullptr) {
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
    if (stub.localServer() != nullptr) {
        in.handleParams(request);
        if (!host::executeHere(stub, flag, wireClass, wireIndex, request, reply)) {
            return;
        }
        reply.rewind();
    } else {
        host::beginRequest(request, flag, stub.oid(), classId, opIndex);
        in.handleParams(request);
        if (!host::remoteCall(stub, wireClass, wireIndex, request, reply)) {
            return;
        }
    }
    hook.evaluateResponse(reply);
    out.handleParams(reply);
    if (reply.hasUnmarshallingFailed()) {
        reply.printUnmarshallError(classId, opIndex);
        host::noteUnreadableReply(stub, wireClass, wireIndex);
    }
}
