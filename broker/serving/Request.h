// Having a request executed, and finishing its reply.
#pragma once

#include "broker/framing/Message.h"
#include "broker/objects/StubTable.h"

namespace trs {

// Runs the operation under the run permission, the request at its first in-argument and the reply at the place of the
// result. `stub` is that of the object of an earlier request, which is often the same, and becomes this one's.
ReplyStatus executeRequest(TreflectStubRef& stub, bool flag, ObjectAddress const& address, TipprmiStream& request,
                           TipprmiStream& reply);
// The status that the reply has in the end.
ReplyStatus finishReply(TipprmiStream& reply, ReplyStatus status, std::uint32_t number);

} // namespace trs
