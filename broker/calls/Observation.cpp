#include "broker/calls/Observation.h"

#include "broker/PrintableText.h"
#include "broker/calls/Peer.h"
#include "broker/calls/RemoteCall.h"
#include "broker/objects/ObserverTable.h"
#include "broker/objects/SubscriberTable.h"
#include "platform/NmaLogHelper.h"
#include "platform/TreflectObserver.h"
#include "platform/TreflectServerObject.h"

namespace trs {

namespace {

// What a removed registration had asked for elsewhere is not wanted any more.
void unsubscribe(std::vector<ObserverTable::Registration> const& removed)
{
    for (ObserverTable::Registration const& registration : removed) {
        if (registration.source != nullptr) {
            Peer::of(*registration.source).events().unsubscribe(registration.key);
        } else {
            SubscriberTable::instance().removeLocal(registration.key);
        }
    }
}

bool observeAt(Peer& peer, bool isExclusive, OperationKey const& key, Deadline const& deadline,
               TreflectObserver& observer, EventLink::Answer& answer)
{
    // Registered first: the peer may send a notification right behind its answer.
    if (!ObserverTable::instance().add(&peer, isExclusive, key, observer)) {
        answer = EventLink::Answer::subscribed;
        return true;
    }
    answer = peer.events().subscribe(key, deadline);
    if (answer == EventLink::Answer::subscribed) {
        return true;
    }
    ObserverTable::instance().remove({&observer, &key, &peer});
    return false;
}

} // namespace

bool observe(TipprmiObjectClient const& object, unsigned long classId, unsigned long opIndex,
             TreflectObserver& observer)
{
    TreflectObjectStub& stub = *object.getStub_();
    OperationKey const key(stub.oid(), classId, opIndex);
    if (TreflectServerObject* const server = stub.localServer()) {
        if (ObserverTable::instance().add(nullptr, false, key, observer)) {
            SubscriberTable::instance().addLocal(key, *server);
        }
        return true;
    }

    Deadline deadline;
    Route route(stub, deadline);
    char const* reason = route.reason();
    while (route.peer() != nullptr) {
        EventLink::Answer answer{};
        if (observeAt(*route.peer(), route.isExclusive(), key, deadline, observer, answer)) {
            route.rememberAnswer();
            return true;
        }
        if (answer == EventLink::Answer::unreachable) {
            route.forget();
            reason = "its process does not answer";
            break;
        }
        reason = "there is no such object";
        if (!route.continueElsewhere()) {
            break;
        }
    }
    LogDispatch(4, LogMakeString("observer '%s' is not registered on operation %u of object '%s': %s",
                                 observer.name().c_str(), static_cast<unsigned>(key.opIndex),
                                 printable(stub.oid().getIdString()).c_str(), reason));
    return false;
}

bool endObservation(TipprmiObjectClient const& object, unsigned long classId, unsigned long opIndex,
                    TreflectObserver& observer)
{
    OperationKey const key(object.getOID(), classId, opIndex);
    TreflectORB const* const orb = object.getStub_()->orb();
    auto const removed =
        ObserverTable::instance().remove({&observer, &key, orb != nullptr ? &Peer::of(*orb) : nullptr});
    unsubscribe(removed);
    return !removed.empty();
}

void endObservations(TreflectObserver& observer) { unsubscribe(ObserverTable::instance().remove({&observer})); }

} // namespace trs
