#include "broker/objects/Execution.h"

#include "broker/CallFailure.h"
#include "broker/objects/RunPermission.h"
#include "platform/TipprmiStream.h"
#include "rmi/TipprmiAny.h"
#include "rmi/TipprmiSequence.h"

namespace trs {

namespace {

// An execution of an observed operation on this thread.
struct Watch {
    TreflectServerObject const& object;
    unsigned long classId;
    unsigned long opIndex;
    Watch* outer;
    bool isNotified = false;
};
thread_local Watch* innermost = nullptr;

Execution::Outcome dispatch(TipprmiObjectSkeleton& object, bool flag, std::uint32_t classId, std::uint32_t opIndex,
                            TipprmiStream& request, TipprmiStream& reply)
{
    if (!object.dispatch(flag, classId, opIndex, request, reply)) {
        return Execution::Outcome::noSuchOperation;
    }
    return request.hasUnmarshallingFailed() ? Execution::Outcome::unreadableRequest : Execution::Outcome::done;
}

} // namespace

Execution::Outcome Execution::run(TipprmiObjectSkeleton& object, bool flag, std::uint32_t classId,
                                  std::uint32_t opIndex, TipprmiStream& request, TipprmiStream& reply)
{
    if (!object.isObserved(classId, opIndex)) [[likely]] {
        return dispatch(object, flag, classId, opIndex, request, reply);
    }
    Watch watch{object, classId, opIndex, innermost};
    innermost = &watch;
    Outcome const outcome = dispatch(object, flag, classId, opIndex, request, reply);
    innermost = watch.outer;
    if (outcome == Outcome::done && !watch.isNotified) {
        object.notifyObservers(classId, opIndex, TipprmiSequence<TipprmiAny>());
    }
    return outcome;
}

void Execution::markNotified(TreflectServerObject const& object, unsigned long classId, unsigned long opIndex)
{
    for (Watch* watch = innermost; watch != nullptr; watch = watch->outer) {
        if (&watch->object == &object && watch->classId == classId && watch->opIndex == opIndex) {
            watch->isNotified = true;
            return;
        }
    }
}

bool executeHere(TreflectObjectStub const& stub, bool flag, std::uint32_t classId, std::uint32_t opIndex,
                 TipprmiStream& request, TipprmiStream& reply)
{
    resetCallFailure();
    RunPermissionScope const running;
    auto const fail = [&](CallFailure::Kind kind, char const* reason) {
        reportCallFailure({kind, CallFailure::CarriedOut::no, classId, opIndex, stub.oid(), {}, reason});
        return false;
    };
    // Looked for under the run permission, which whoever destroys an object holds.
    TreflectServerObject* const server = stub.localServer();
    if (server == nullptr) {
        return fail(CallFailure::Kind::noSuchObject, "the object is gone");
    }
    switch (Execution::run(static_cast<TipprmiObjectSkeleton&>(*server), flag, classId, opIndex, request, reply)) {
    case Execution::Outcome::noSuchOperation:
        return fail(CallFailure::Kind::noSuchOperation, "the object has no such operation");
    case Execution::Outcome::unreadableRequest:
        return fail(CallFailure::Kind::refused, "the arguments could not be read");
    case Execution::Outcome::done:
        break;
    }
    // A nested call that failed is not this one's failure.
    resetCallFailure();
    return true;
}

} // namespace trs
