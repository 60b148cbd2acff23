// Ends several channels at once.
#pragma once

#include "broker/transport/Channel.h"

#include <atomic>
#include <list>
#include <mutex>

namespace trs {

// May be used from any thread.
class Cut {
public:
    // A channel that is shut down by the cut, from construction to destruction; at once when that has come.
    class Member {
    public:
        Member(Cut& cut, Channel& channel);
        Member(Member const&) = delete;
        Member& operator=(Member const&) = delete;
        ~Member();

    private:
        Cut& cut_;
        std::list<Channel*>::iterator const place_;
    };

    // Whoever waits in one of the channels returns, and who waits for a new one gives up. Later ones are cut too.
    void cut();
    // Later ones are not cut any more.
    void mend() { isCut_ = false; }
    bool isCut() const { return isCut_; }

private:
    std::atomic<bool> isCut_ = false;
    std::mutex mutex_;
    std::list<Channel*> channels_;
};

} // namespace trs
