#include "tools/trsctl/Interrupt.h"

#include "broker/Broker.h"
#include "tools/support/StandardStreams.h"

#include <atomic>

namespace trs::ctl {

namespace {

std::atomic<bool> hasCome = false;

} // namespace

Interrupt::Interrupt()
{
    hasCome = false;
    watch_.emplace(std::initializer_list<int>{SIGINT}, [] {
        hasCome = true;
        Broker::instance().removePeers(); // which the next verb adds again
    });
}

Interrupt::~Interrupt()
{
    watch_.reset();
    hasCome = false;
}

bool Interrupt::came() { return hasCome || tools::isOutputGone(); }

} // namespace trs::ctl
