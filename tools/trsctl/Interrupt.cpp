#include "tools/trsctl/Interrupt.h"

#include "tools/support/StandardStreams.h"

#include <atomic>
#include <csignal>

namespace trs::ctl {

namespace {

std::atomic<bool> hasCome = false;

} // namespace

Interrupt::Interrupt()
{
    hasCome = false;
    static_cast<void>(std::signal(SIGINT, [](int) { hasCome = true; }));
}

Interrupt::~Interrupt()
{
    hasCome = false;
    static_cast<void>(std::signal(SIGINT, SIG_DFL));
}

bool Interrupt::came() { return hasCome || tools::isOutputGone(); }

} // namespace trs::ctl
