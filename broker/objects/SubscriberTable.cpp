#include "broker/objects/SubscriberTable.h"

#include "broker/framing/Message.h"
#include "broker/objects/LocalNotifier.h"
#include "broker/objects/StubTable.h"
#include "platform/NmaLogHelper.h"
#include "platform/TreflectServerObject.h"
#include "rmi/TipprmiAny.h"
#include "rmi/TipprmiSequence.h"

#include <algorithm>

namespace trs {

// Never destroyed: objects with static storage notify to the end.
SubscriberTable& SubscriberTable::instance()
{
    static SubscriberTable& table = *new SubscriberTable;
    return table;
}

bool SubscriberTable::isMarked(TipprmiOID const& oid) const
{
    auto const first = table_.lower_bound(OperationView{oid.getNamespace().value(), oid.getIdString(), 0, 0});
    return areAllMarked_ || (first != table_.end() && first->first.oid == oid);
}

// Sets the active object's mark. Whether there is such an object.
bool SubscriberTable::markObject(TipprmiOID const& oid)
{
    bool const isObserved = isMarked(oid);
    bool isActive = false;
    StubTable::instance().withActive(oid, [&](TreflectServerObject& server) {
        server.setObserved(isObserved);
        isActive = true;
    });
    return isActive;
}

void SubscriberTable::refresh(TipprmiOID const& oid)
{
    std::lock_guard const lock(mutex_);
    markObject(oid);
}

void SubscriberTable::markAll(bool areMarked)
{
    std::lock_guard const lock(mutex_);
    areAllMarked_ = areMarked;
    StubTable::instance().forEachActive(
        [this](TreflectServerObject& server) { server.setObserved(isMarked(server.getOID())); });
}

void SubscriberTable::dropIfEmpty(Table::iterator place)
{
    if (place->second.isEmpty()) {
        TipprmiOID const oid = place->first.oid;
        table_.erase(place);
        markObject(oid);
    }
}

SubscriberTable::Added SubscriberTable::add(OperationKey const& key, std::shared_ptr<Subscriber> const& sink,
                                            bool isRenewal)
{
    std::lock_guard const lock(mutex_);
    auto const place = table_.try_emplace(key).first;
    std::vector<std::shared_ptr<Subscriber>>& sinks = place->second.sinks;
    bool const isNew = std::find(sinks.begin(), sinks.end(), sink) == sinks.end();
    if (isNew) {
        sinks.push_back(sink);
    }
    bool const isThere = markObject(key.oid);
    if (!isNew) {
        return isThere || isRenewal ? Added::before : Added::noSuchObject;
    }
    if (isThere || isRenewal) {
        return Added::yes;
    }
    sinks.pop_back();
    dropIfEmpty(place);
    return Added::noSuchObject;
}

bool SubscriberTable::remove(OperationView const& operation, Subscriber const& sink)
{
    std::lock_guard const lock(mutex_);
    auto const place = table_.find(operation);
    if (place == table_.end()) {
        return false;
    }
    std::size_t const removed =
        std::erase_if(place->second.sinks, [&sink](auto const& present) { return present.get() == &sink; });
    dropIfEmpty(place);
    return removed != 0;
}

void SubscriberTable::removeAll(Subscriber const& sink)
{
    std::lock_guard const lock(mutex_);
    for (auto place = table_.begin(); place != table_.end();) {
        std::erase_if(place->second.sinks, [&sink](auto const& present) { return present.get() == &sink; });
        dropIfEmpty(place++);
    }
}

void SubscriberTable::addLocal(OperationKey const& key, TreflectServerObject& server)
{
    std::lock_guard const lock(mutex_);
    ++table_[key].local;
    server.setObserved(true); // it need not be active
}

void SubscriberTable::removeLocal(OperationKey const& key)
{
    std::lock_guard const lock(mutex_);
    auto const place = table_.find(key);
    if (place != table_.end() && place->second.local != 0) {
        --place->second.local;
        dropIfEmpty(place);
    }
}

bool SubscriberTable::isObserved(TipprmiOID const& oid, unsigned long classId, unsigned long opIndex) const
{
    std::lock_guard const lock(mutex_);
    return table_.contains(OperationView{oid.getNamespace().value(), oid.getIdString(),
                                         static_cast<std::uint32_t>(classId), static_cast<std::uint32_t>(opIndex)});
}

void SubscriberTable::notify(OperationKey const& key, TipprmiSequence<TipprmiAny> const& parameters) const
{
    Subscribers subscribers;
    {
        std::lock_guard const lock(mutex_);
        auto const place = table_.find(key);
        if (place == table_.end()) {
            return;
        }
        subscribers = place->second;
    }
    if (subscribers.local != 0) {
        LocalNotifier::instance().post(key, parameters);
    }
    if (subscribers.sinks.empty()) {
        return;
    }
    TipprmiStream message(100);
    beginAddressed(message, MessageKind::notification, 0, key.oid, key.classId, key.opIndex);
    std::size_t const addressed = message.size();
    appendParameters(message, parameters);
    if (!finishMessage(message, 0)) {
        LogDispatch(4, "a notification is longer than a message may be; its parameters are left out");
        message.truncate(addressed);
        appendParameters(message, TipprmiSequence<TipprmiAny>());
        finishMessage(message, 0);
    }
    for (std::shared_ptr<Subscriber> const& sink : subscribers.sinks) {
        sink->send(message);
    }
}

} // namespace trs
