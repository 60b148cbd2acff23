// Notifications that may be missing.
#pragma once

#include "broker/framing/OperationKey.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace trs {

// A time in which a peer may have told of executions that no observer here was told of. It begins when the connection
// for the peer's notifications is lost: because the peer ended, or the way to it broke, or because this process did not
// take what came, and was disconnected.
struct NotificationGap {
    using Time = std::chrono::system_clock::time_point;

    std::string peer;                     // its endpoint
    std::vector<OperationKey> operations; // that are observed there, of which executions may be missing
    Time since;                           // whatever had come from the peer until then was delivered
    Time lost;                            // when the loss was noticed
    std::optional<Time> until;            // when the peer knew of the subscriptions again; none: it does not yet
};

// Is told of every gap twice: when the connection is found lost, and when the peer knows of the subscriptions again,
// before the first notification that comes after it. A value that is read from then on, and followed by notifications,
// misses nothing. Operations of one loss may be told as several gaps, each in one of them.
class GapListener {
public:
    using Tell = std::function<void(NotificationGap const& gap)>;

    // Calls `tell` for the gaps of all peers, from now on, on a handler thread and under the run permission as it calls
    // observers, one call at a time.
    explicit GapListener(Tell tell);
    GapListener(GapListener const&) = delete;
    GapListener& operator=(GapListener const&) = delete;
    // When it returns, `tell` is not running, save on the calling thread, and never will. Gives the run permission back
    // while it waits.
    ~GapListener();

private:
    friend class GapListeners;

    Tell const tell_;
};

// For the broker: tells all listeners, on the calling handler thread.
void tellGap(NotificationGap const& gap);

} // namespace trs
