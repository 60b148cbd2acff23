#include "broker/calls/Engine.h"

#include "broker/Broker.h"
#include "broker/objects/RunPermission.h"

#include <utility>

namespace trs {

namespace {

constexpr std::size_t roomSize = 65536; // bytes
constinit thread_local bool isEngine = false;

// Told behind everybody else.
class Stopping final : public Poller::Watcher {
public:
    explicit Stopping(Poller& poller) : poller_(poller) {}
    void ready(Poller::Events) override { poller_.stop(); }

private:
    Poller& poller_;
};

} // namespace

// Never destroyed: peers are not either.
Engine& Engine::instance()
{
    static Engine& engine = *new Engine;
    return engine;
}

bool Engine::isOnThread() { return isEngine; }

std::string Engine::start()
{
    std::lock_guard const lock(mutex_);
    if (isRunning_) [[likely]] {
        return {};
    }
    if (!poller_.complaint().empty()) {
        return poller_.complaint();
    }
    Broker::instance(); // stops it when the process ends
    isRunning_ = thread_.start([this] { run(); });
    return isRunning_ ? std::string() : "no thread could be started";
}

void Engine::run()
{
    becomeHandlerThread();
    isEngine = true;
    room_.resize(roomSize);
    poller_.run([this] { flush(); });
}

void Engine::flush()
{
    for (PutOff const& each : std::exchange(later_, {})) {
        each.later->flush();
    }
}

void Engine::stop()
{
    std::lock_guard const lock(mutex_);
    if (isRunning_) {
        Poller::Number const last = poller_.add(std::make_shared<Stopping>(poller_));
        poller_.tell(last);
        RunPermissionPause const waiting;
        thread_.join();
        poller_.remove(last);
        isRunning_ = false;
    }
}

} // namespace trs
