#include "broker/objects/ObserverTable.h"

#include "broker/PrintableText.h"
#include "broker/objects/RunPermission.h"
#include "platform/NmaLogHelper.h"
#include "platform/TreflectObserver.h"
#include "rmi/TipprmiAny.h"
#include "rmi/TipprmiSequence.h"

#include <algorithm>

namespace trs {

// Never destroyed: observers with static storage withdraw to the end.
ObserverTable& ObserverTable::instance()
{
    static ObserverTable& table = *new ObserverTable;
    return table;
}

bool ObserverTable::add(TreflectORB const* source, bool isExclusive, OperationKey const& key,
                        TreflectObserver& observer)
{
    std::lock_guard const lock(mutex_);
    std::vector<Registration>& present = registrations_[key];
    for (Registration const& registration : present) {
        if (registration.observer == &observer && registration.source == source) {
            return false;
        }
    }
    present.push_back({source, isExclusive, key, &observer, ++newest_});
    return true;
}

template <class Matches>
std::vector<ObserverTable::Registration> ObserverTable::takeOut(Table::iterator place, Table::iterator end,
                                                                Matches const& matches)
{
    std::vector<Registration> taken;
    while (place != end) {
        std::erase_if(place->second, [&](Registration const& registration) {
            bool const isMeant = matches(registration);
            if (isMeant) {
                taken.push_back(registration);
            }
            return isMeant;
        });
        place = place->second.empty() ? registrations_.erase(place) : std::next(place);
    }
    changed_.notify_all();
    return taken;
}

std::vector<ObserverTable::Registration> ObserverTable::remove(Selection const& selection)
{
    std::unique_lock lock(mutex_);
    auto const [first, last] = selection.key != nullptr ? registrations_.equal_range(*selection.key)
                                                        : std::pair(registrations_.begin(), registrations_.end());
    std::vector<Registration> removed = takeOut(first, last, [&](Registration const& registration) {
        return registration.observer == selection.observer &&
               (selection.exclusiveSource == nullptr || registration.source == selection.exclusiveSource);
    });
    if (isRunningElsewhere(selection.observer)) {
        lock.unlock();
        RunPermissionPause const waiting;
        lock.lock();
        changed_.wait(lock, [&] { return !isRunningElsewhere(selection.observer); });
        lock.unlock();
    }
    return removed;
}

void ObserverTable::removeAllAt(TreflectORB const& source)
{
    std::lock_guard const lock(mutex_);
    takeOut(registrations_.begin(), registrations_.end(),
            [&source](Registration const& registration) { return registration.source == &source; });
}

ObserverTable::Serial ObserverTable::newest() const
{
    std::lock_guard const lock(mutex_);
    return newest_;
}

bool ObserverTable::isRegistered(Registration const& registration) const
{
    auto const found = registrations_.find(registration.key);
    return found != registrations_.end() &&
           std::any_of(found->second.begin(), found->second.end(),
                       [&](Registration const& present) { return present.serial == registration.serial; });
}

bool ObserverTable::isRunning(TreflectObserver const* observer) const
{
    return std::any_of(running_.begin(), running_.end(),
                       [observer](Running const& running) { return running.observer == observer; });
}

bool ObserverTable::isRunningElsewhere(TreflectObserver const* observer) const
{
    return std::any_of(running_.begin(), running_.end(), [observer](Running const& running) {
        return running.observer == observer && running.thread != std::this_thread::get_id();
    });
}

void ObserverTable::deliver(TreflectORB const* source, OperationView const& operation,
                            TipprmiSequence<TipprmiAny>& parameters, Serial newest)
{
    std::vector<Registration> told;
    {
        std::lock_guard const lock(mutex_);
        auto const found = registrations_.find(operation);
        if (found == registrations_.end()) {
            return;
        }
        for (Registration const& registration : found->second) {
            if (registration.source == source && registration.serial <= newest) {
                told.push_back(registration);
            }
        }
    }
    for (Registration const& registration : told) {
        tell(registration, parameters);
    }
}

// The observer counts as being told from before the thread asks for the run permission, so that whoever removes it
// while the thread waits for that waits for the thread.
void ObserverTable::tell(Registration const& registration, TipprmiSequence<TipprmiAny>& parameters)
{
    {
        std::unique_lock lock(mutex_);
        auto const isOver = [&] { return !isRunning(registration.observer) || !isRegistered(registration); };
        if (!isOver()) {
            lock.unlock();
            HandlerWait const waiting;
            lock.lock();
            changed_.wait(lock, isOver);
        }
        if (!isRegistered(registration)) {
            return;
        }
        running_.push_back({registration.observer, std::this_thread::get_id()});
    }
    notify(registration, parameters);
    std::lock_guard const lock(mutex_);
    std::erase_if(running_, [&](Running const& running) { return running.observer == registration.observer; });
    changed_.notify_all();
}

void ObserverTable::notify(Registration const& registration, TipprmiSequence<TipprmiAny>& parameters)
{
    RunPermissionScope const running;
    auto const isStill = [&] {
        std::lock_guard const lock(mutex_);
        return isRegistered(registration);
    };
    if (!isStill()) {
        return;
    }
    for (TipprmiAny& value : parameters) {
        value.setOrigin(registration.source, registration.isExclusive);
    }
    bool const isContent = registration.observer->notify(parameters);
    // The observer may have withdrawn and be gone.
    if (!isContent && isStill()) {
        LogDispatch(4, LogMakeString("observer '%s' reports a failure on operation %u of object '%s'",
                                     registration.observer->name().c_str(),
                                     static_cast<unsigned>(registration.key.opIndex),
                                     printable(registration.key.oid.getIdString()).c_str()));
    }
}

} // namespace trs
