#include "broker/serving/Request.h"

#include "broker/objects/Execution.h"
#include "broker/objects/RunPermission.h"

namespace trs {

ReplyStatus executeRequest(TreflectStubRef& stub, bool flag, ObjectAddress const& address, TipprmiStream& request,
                           TipprmiStream& reply)
{
    TipprmiOID const& last = stub->oid();
    if (last.getIdString() != address.id || last.getNamespace().value() != address.space) {
        auto const found = StubTable::instance().findActive(NamespaceId(address.space), address.id);
        if (!found) {
            return ReplyStatus::noSuchObject;
        }
        stub = *found;
    }
    RunPermissionScope const running;
    // Looked for under the run permission, which whoever destroys an object holds.
    TreflectServerObject* const server = stub->localServer();
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

ReplyStatus finishReply(TipprmiStream& reply, ReplyStatus status, std::uint32_t number)
{
    if (status != ReplyStatus::done) {
        reduceReply(reply, status);
    }
    if (!finishMessage(reply, number)) {
        status = ReplyStatus::replyTooLong;
        reduceReply(reply, status);
        finishMessage(reply, number);
    }
    return status;
}

} // namespace trs
