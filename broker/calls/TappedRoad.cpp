#include "broker/calls/TappedRoad.h"

#include "broker/ServerTap.h"
#include "broker/objects/StubTable.h"

namespace trs {

constinit std::atomic<Peer*> TappedRoad::own_ = nullptr;

bool TappedRoad::isDirect(TreflectObjectStub& stub)
{
    return UntappedCalls::isOn() || !StubTable::isOfIdentifier(stub);
}

} // namespace trs
