// A thread of the broker's.
#pragma once

#include <functional>
#include <pthread.h>

namespace trs {

// Unlike std::thread it can fail to start without taking the process down, has a modest stack where address space is
// scarce, and leaves the process's signals to the threads of the program.
class Thread {
public:
    Thread() = default;
    Thread(Thread const&) = delete;
    Thread& operator=(Thread const&) = delete;
    ~Thread() { join(); }

    // False when the system has no thread to spare. A thread that was started before is joined first.
    bool start(std::function<void()> body);
    // Waits for the end, if there is a thread.
    void join();
    bool isStarted() const { return isStarted_; }

private:
    static void* run(void* thread);

    std::function<void()> body_;
    pthread_t thread_{};
    bool isStarted_ = false;
};

} // namespace trs
