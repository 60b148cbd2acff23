// The thread that carries asynchronous calls and subscriptions, of all peers.
#pragma once

#include "broker/machine/Thread.h"
#include "broker/transport/Poller.h"

#include <memory>
#include <mutex>
#include <span>
#include <vector>

namespace trs {

// One for the process. Its thread is started when it is first needed and ends with Broker::stop(); it waits for nothing
// but what its poller tells.
class Engine {
public:
    static Engine& instance();

    Poller& poller() { return poller_; }
    // Empty, or why there can be no thread.
    std::string start();
    // Ends the thread when what its poller was told before has been taken. It can be started again.
    void stop();

    // The calling thread is the engine's.
    static bool isOnThread();

    // What is put off until all that is ready has been told, so that what follows from it leaves together.
    class Later {
    public:
        virtual void flush() = 0;

    protected:
        ~Later() = default;
    };
    // On the thread, which keeps `keeper`.
    void putOff(Later& later, std::shared_ptr<void> keeper) { later_.push_back({&later, std::move(keeper)}); }
    // On the thread: for what is received, until the next use.
    std::span<unsigned char> room() { return room_; }

private:
    struct PutOff {
        Later* later;
        std::shared_ptr<void> keeper;
    };

    Engine() = default;
    void run();
    void flush();

    Poller poller_{Poller::Tells::always, Poller::Waits::awakeFirst};
    std::mutex mutex_;
    bool isRunning_ = false;
    Thread thread_;
    // The thread's own.
    std::vector<PutOff> later_;
    std::vector<unsigned char> room_;
};

} // namespace trs
