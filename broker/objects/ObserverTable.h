// The observers of this process.
#pragma once

#include "broker/framing/OperationKey.h"
#include "platform/TipprmiForward.h"

#include <condition_variable>
#include <cstdint>
#include <limits>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

class TreflectORB;
class TreflectObserver;

namespace trs {

// Who is registered on what, and who is being told. An observer is told of one execution at a time, and never again
// once its registration was removed.
class ObserverTable {
public:
    using Serial = std::uint64_t;
    struct Registration {
        TreflectORB const* source; // null: the object lives in this process
        bool isExclusive;
        OperationKey key;
        TreflectObserver* observer;
        Serial serial;
    };
    // Which of an observer's registrations are meant: all, or those on one operation of the peer or of any.
    struct Selection {
        TreflectObserver* observer;
        OperationKey const* key = nullptr;
        TreflectORB const* exclusiveSource = nullptr;
    };

    static ObserverTable& instance();

    // False when the observer is registered there already.
    bool add(TreflectORB const* source, bool isExclusive, OperationKey const& key, TreflectObserver& observer);
    // The removed registrations. When it returns, the observer is not being told of anything, except by the calling
    // thread. Gives the run permission back while it waits.
    std::vector<Registration> remove(Selection const& selection);
    // Removes every registration on objects of that peer.
    void removeAllAt(TreflectORB const& source);

    // The serial of the newest registration.
    Serial newest() const;
    // Tells those who were registered when `newest` was the newest, one after the other, on the calling handler thread.
    void deliver(TreflectORB const* source, OperationView const& operation, TipprmiSequence<TipprmiAny>& parameters,
                 Serial newest = std::numeric_limits<Serial>::max());

private:
    struct Running {
        TreflectObserver const* observer;
        std::thread::id thread;
    };

    using Table = std::map<OperationKey, std::vector<Registration>, OperationOrder>;

    ObserverTable() = default;
    template <class Matches>
    std::vector<Registration> takeOut(Table::iterator place, Table::iterator end, Matches const& matches);
    bool isRegistered(Registration const& registration) const;
    bool isRunning(TreflectObserver const* observer) const;
    bool isRunningElsewhere(TreflectObserver const* observer) const;
    void tell(Registration const& registration, TipprmiSequence<TipprmiAny>& parameters);
    void notify(Registration const& registration, TipprmiSequence<TipprmiAny>& parameters);

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    Table registrations_;
    std::vector<Running> running_;
    Serial newest_ = 0;
};

} // namespace trs
