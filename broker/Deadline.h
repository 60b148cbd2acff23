// How long calls may take.
#pragma once

#include <chrono>
#include <cstdint>

namespace trs {

// The time by which something must have happened. Reads a clock that is cheap and a few milliseconds coarse.
class Deadline {
public:
    // The calling thread's time for a call, from now on.
    Deadline() : Deadline(current()) {}
    explicit Deadline(std::chrono::milliseconds duration);

    // The whole time in milliseconds, at least 1.
    int duration() const { return duration_; }
    // What is left of it; 0 when it is over.
    int remaining() const;
    // Whether nothing has been waited for yet, so that what is left is the whole.
    bool isWhole() const { return isWhole_; }
    void startWaiting() { isWhole_ = false; }
    std::int64_t start() const { return start_; }

    // Milliseconds of the same clock.
    static std::int64_t now();
    // The time for the calling thread's next call: its CallDeadline's, else the process's.
    static std::chrono::milliseconds current();
    static void setDefault(std::chrono::milliseconds duration);

private:
    std::int64_t start_;
    int duration_;
    bool isWhole_ = true;
};

// Gives the calls of the current thread another time, from construction to destruction. Scopes nest.
class CallDeadline {
public:
    explicit CallDeadline(std::chrono::milliseconds duration);
    CallDeadline(CallDeadline const&) = delete;
    CallDeadline& operator=(CallDeadline const&) = delete;
    ~CallDeadline();

private:
    int const outer_;
};

} // namespace trs
