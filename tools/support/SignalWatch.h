// Signals as events, on a thread that nothing keeps busy.
#pragma once

#include "broker/machine/Thread.h"

#include <atomic>
#include <csignal>
#include <functional>
#include <initializer_list>

namespace trs::tools {

// From construction to destruction these signals do nothing but have `told` called, on the watch's own thread. Threads
// that are there already must leave the signals to others, as all of the broker's do. Of
// watches within each other only the innermost is told.
class SignalWatch {
public:
    SignalWatch(std::initializer_list<int> signals, std::function<void()> told);
    SignalWatch(SignalWatch const&) = delete;
    SignalWatch& operator=(SignalWatch const&) = delete;
    // Waits until `told` has returned. A signal that it was not called for is forgotten.
    ~SignalWatch();

    // Has it called as if a signal had come, from any thread.
    void raise();

private:
    void watch();
    void wake() const;

    static inline std::atomic<SignalWatch*> innermost = nullptr;

    std::function<void()> const told_;
    SignalWatch* const outer_;
    sigset_t former_{}; // what was blocked before
    int signals_ = -1;
    int wakeup_ = -1;
    std::atomic<bool> isRaised_ = false;
    std::atomic<bool> isEnding_ = false;
    Thread thread_;
};

} // namespace trs::tools
