#include "platform/TreflectServerObject.h"

#include "platform/NmaLogHelper.h"
#include "platform/host/Execution.h"
#include "platform/host/LocalNotifier.h"
#include "platform/host/StubTable.h"
#include "platform/host/SubscriberTable.h"
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

TreflectServerObject::TreflectServerObject(TipprmiOID const& oid) : stub_(host::StubTable::makePrivate(*this, oid)) {}

TreflectServerObject::~TreflectServerObject()
{
    deactivate();
    host::StubTable::orphan(*stub_.get());
}

bool TreflectServerObject::activate()
{
    TipprmiOID const& oid = getOID();
    if (oid.isNull()) {
        LogDispatch(4, "an object without an identifier cannot be made reachable");
        return false;
    }
    if (!host::StubTable::instance().activate(*this, oid)) {
        LogDispatch(4, LogMakeString("another object of this process has the identifier '%s' (namespace %lu)",
                                     oid.getIdString().c_str(), oid.getNamespace().value()));
        return false;
    }
    host::SubscriberTable::instance().refresh(oid);
    return true;
}

void TreflectServerObject::deactivate() { host::StubTable::instance().deactivate(*this, getOID()); }

bool TreflectServerObject::isObserved(unsigned long classId, unsigned long opIndex) const
{
    return isObserved() && host::SubscriberTable::instance().isObserved(getOID(), classId, opIndex);
}

void TreflectServerObject::notifyObservers(unsigned long classId, unsigned long opIndex,
                                           TipprmiSequence<TipprmiAny> const& parameters) const
{
    if (!isObserved()) {
        return;
    }
    host::Execution::markNotified(*this, classId, opIndex);
    host::SubscriberTable::instance().notify(host::OperationKey(getOID(), classId, opIndex), parameters);
}
