#include "platform/TreflectServerObject.h"

#include "broker/objects/Execution.h"
#include "broker/objects/LocalNotifier.h"
#include "broker/objects/StubTable.h"
#include "broker/objects/SubscriberTable.h"
#include "platform/NmaLogHelper.h"
#include "rmi/TipprmiAny.h"
#include "rmi/TipprmiSequence.h"

#include <chrono>
#include <unistd.h>

namespace {

// The process number tells apart the processes of one moment, the time those of the same number.
TipprmiOID newIdentifier()
{
    static std::string const prefix =
        LogMakeString("local/%ld/%llx/", static_cast<long>(::getpid()),
                      static_cast<unsigned long long>(std::chrono::steady_clock::now().time_since_epoch().count()));
    static std::atomic<unsigned long> last = 0;
    return {prefix + std::to_string(last.fetch_add(1, std::memory_order_relaxed) + 1)};
}

} // namespace

TreflectServerObject::TreflectServerObject() : TreflectServerObject(newIdentifier()) {}

TreflectServerObject::TreflectServerObject(TipprmiOID const& oid) : stub_(trs::StubTable::makePrivate(*this, oid)) {}

TreflectServerObject::~TreflectServerObject()
{
    deactivate();
    trs::StubTable::orphan(*stub_.get());
}

bool TreflectServerObject::activate()
{
    TipprmiOID const& oid = getOID();
    if (oid.isNull()) {
        LogDispatch(4, "an object without an identifier cannot be made reachable");
        return false;
    }
    if (!trs::StubTable::instance().activate(*this, oid)) {
        LogDispatch(4, LogMakeString("another object of this process has the identifier '%s' (namespace %lu)",
                                     oid.getIdString().c_str(), oid.getNamespace().value()));
        return false;
    }
    trs::SubscriberTable::instance().refresh(oid);
    return true;
}

void TreflectServerObject::deactivate() { trs::StubTable::instance().deactivate(*this, getOID()); }

bool TreflectServerObject::isObserved(unsigned long classId, unsigned long opIndex) const
{
    return isObserved() && trs::SubscriberTable::instance().isObserved(getOID(), classId, opIndex);
}

void TreflectServerObject::notifyObservers(unsigned long classId, unsigned long opIndex,
                                           TipprmiSequence<TipprmiAny> const& parameters) const
{
    if (!isObserved()) {
        return;
    }
    trs::Execution::markNotified(*this, classId, opIndex);
    trs::SubscriberTable::instance().notify(trs::OperationKey(getOID(), classId, opIndex), parameters);
}
