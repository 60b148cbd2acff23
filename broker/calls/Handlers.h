// The workers of what a client runs: asynchronous calls of this process's own objects, and observers.
#pragma once

#include "broker/objects/Workers.h"

#include <memory>

namespace trs {

class Handlers {
public:
    // False when no worker is there for it nor will be.
    static bool submit(std::shared_ptr<Workers::Task> task);
    // Waits for the tasks that run, refuses those that do not. Later ones begin anew. Gives the run permission back
    // meanwhile.
    static void stop();
};

} // namespace trs
