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

using Kind = CallFailure::Kind;

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

EventLink::Answer observeAt(Peer& peer, bool isExclusive, OperationKey const& key, Deadline const& deadline,
                            TreflectObserver& observer, std::string& why)
{
    // Registered first: the peer may send a notification right behind its answer.
    if (!ObserverTable::instance().add(&peer, isExclusive, key, observer)) {
        return EventLink::Answer::subscribed;
    }
    EventLink::Answer const answer = peer.events().subscribe(key, deadline, why);
    if (answer != EventLink::Answer::subscribed) {
        ObserverTable::instance().remove({&observer, &key, &peer});
    }
    return answer;
}

} // namespace

bool observe(TipprmiObjectClient const& object, unsigned long classId, unsigned long opIndex,
             TreflectObserver& observer)
{
    resetCallFailure();
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
    Kind kind = route.failure();
    std::string why = route.reason();
    std::string asked;
    while (Peer* const peer = route.peer()) {
        asked = peer->endpoint();
        EventLink::Answer const answer = observeAt(*peer, route.isExclusive(), key, deadline, observer, why);
        if (answer == EventLink::Answer::subscribed) {
            route.rememberAnswer();
            return true;
        }
        if (answer == EventLink::Answer::unreachable) {
            route.forget();
            kind = deadline.remaining() == 0 ? Kind::deadline : Kind::notConnected;
            break;
        }
        kind = Kind::noSuchObject;
        why = "there is no such object";
        if (!route.continueElsewhere()) {
            break;
        }
    }
    LogDispatch(4, LogMakeString("observer '%s' is not registered on operation %u of object '%s'%s: %s",
                                 observer.name().c_str(), static_cast<unsigned>(key.opIndex),
                                 printable(stub.oid().getIdString()).c_str(),
                                 asked.empty() ? "" : (" at " + asked).c_str(), why.c_str()));
    recordCallFailure({kind, CallFailure::CarriedOut::no, key.classId, key.opIndex, stub.oid(), asked, std::move(why)});
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
