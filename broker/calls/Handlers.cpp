#include "broker/calls/Handlers.h"

#include "broker/Broker.h"
#include "broker/objects/RunPermission.h"

#include <mutex>
#include <utility>

namespace trs {

namespace {

// All that they do needs the run permission, which one at a time has: more than two would only wait for it. Those who
// give it back are replaced.
constexpr Workers::Limits limits{.executing = 2};

constinit std::mutex handlersMutex;

// Never destroyed: it is asked for to the end.
std::shared_ptr<Workers>& handlers()
{
    static auto& workers = *new std::shared_ptr<Workers>;
    return workers;
}

} // namespace

bool Handlers::submit(std::shared_ptr<Workers::Task> task)
{
    std::shared_ptr<Workers> workers;
    {
        std::lock_guard const lock(handlersMutex);
        if (handlers() == nullptr) {
            Broker::instance(); // stops them when the process ends
            handlers() = std::make_shared<Workers>(limits);
        }
        workers = handlers();
    }
    return workers->submit(std::move(task));
}

void Handlers::stop()
{
    RunPermissionPause const waiting;
    std::shared_ptr<Workers> ended;
    std::lock_guard const lock(handlersMutex);
    ended = std::exchange(handlers(), nullptr);
}

} // namespace trs
