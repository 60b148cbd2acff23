#include "tools/trsctl/Interrupt.h"

#include "broker/Broker.h"
#include "tools/support/StandardStreams.h"

#include <atomic>

namespace trs::ctl {

namespace {

std::atomic<bool> hasCome = false;
int interruptDepth = 0; // one ends all that it comes to

} // namespace

Interrupt::Interrupt()
{
    hasCome = interruptDepth++ > 0 && hasCome;
    watch_.emplace(std::initializer_list<int>{SIGINT}, [] {
        hasCome = true;
        Broker::instance().removePeers(); // which the next verb adds again
    });
}

Interrupt::~Interrupt()
{
    watch_.reset();
    hasCome = --interruptDepth > 0 && hasCome;
}

bool Interrupt::came() { return hasCome || tools::isOutputGone(); }

} // namespace trs::ctl
