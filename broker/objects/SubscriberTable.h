// Who is to be told of executions of this process's objects.
#pragma once

#include "broker/framing/OperationKey.h"
#include "broker/objects/Subscriber.h"
#include "platform/TipprmiForward.h"

#include <map>
#include <memory>
#include <mutex>
#include <vector>

class TreflectServerObject;

namespace trs {

// Subscriptions are to identifiers, so that an object that takes the place of another keeps its subscribers.
class SubscriberTable {
public:
    static SubscriberTable& instance();

    enum class Added { yes, before, noSuchObject };

    // There must be such an object now, unless `isRenewal`: it may come later then.
    Added add(OperationKey const& key, std::shared_ptr<Subscriber> const& sink, bool isRenewal);
    // Whether there was such a subscription.
    bool remove(OperationView const& operation, Subscriber const& sink);
    void removeAll(Subscriber const& sink);
    // One more or one less observer in this process.
    void addLocal(OperationKey const& key, TreflectServerObject& server);
    void removeLocal(OperationKey const& key);

    bool isObserved(TipprmiOID const& oid, unsigned long classId, unsigned long opIndex) const;
    void notify(OperationKey const& key, TipprmiSequence<TipprmiAny> const& parameters) const;
    // An object with the identifier has become active.
    void refresh(TipprmiOID const& oid);
    // Whether all active objects are marked as observed, whoever observes them: calls then come by the broker.
    void markAll(bool areMarked);

private:
    struct Subscribers {
        std::vector<std::shared_ptr<Subscriber>> sinks;
        unsigned local = 0;

        bool isEmpty() const { return sinks.empty() && local == 0; }
    };
    using Table = std::map<OperationKey, Subscribers, OperationOrder>;

    SubscriberTable() = default;
    bool markObject(TipprmiOID const& oid);
    void dropIfEmpty(Table::iterator place);

    bool isMarked(TipprmiOID const& oid) const;

    mutable std::mutex mutex_;
    Table table_;
    bool areAllMarked_ = false;
};

} // namespace trs
