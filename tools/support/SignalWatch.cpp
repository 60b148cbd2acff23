#include "tools/support/SignalWatch.h"

#include <array>
#include <cstdint>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace trs::tools {

SignalWatch::SignalWatch(std::initializer_list<int> signals, std::function<void()> told)
    : told_(std::move(told)), outer_(innermost.exchange(this))
{
    sigset_t watched;
    ::sigemptyset(&watched);
    for (int const each : signals) {
        ::sigaddset(&watched, each);
    }
    ::pthread_sigmask(SIG_BLOCK, &watched, &former_);
    if (outer_ != nullptr) {
        outer_->wake();
    }
    signals_ = ::signalfd(-1, &watched, SFD_CLOEXEC | SFD_NONBLOCK);
    wakeup_ = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (signals_ < 0 || wakeup_ < 0 || !thread_.start([this] { watch(); })) {
        ::pthread_sigmask(SIG_SETMASK, &former_, nullptr); // better the signals end the process than nothing does
    }
}

SignalWatch::~SignalWatch()
{
    isEnding_ = true;
    wake();
    thread_.join();
    for (signalfd_siginfo forgotten{}; ::read(signals_, &forgotten, sizeof forgotten) > 0;) {
    }
    ::pthread_sigmask(SIG_SETMASK, &former_, nullptr);
    ::close(signals_);
    ::close(wakeup_);
    innermost = outer_;
    if (outer_ != nullptr) {
        outer_->wake();
    }
}

void SignalWatch::raise()
{
    isRaised_ = true;
    wake();
}

// To look at what has changed.
void SignalWatch::wake() const { ::eventfd_write(wakeup_, 1); }

void SignalWatch::watch()
{
    while (!isEnding_) {
        bool const isInnermost = innermost == this;
        std::array<pollfd, 2> waiting{{{isInnermost ? signals_ : -1, POLLIN, 0}, {wakeup_, POLLIN, 0}}};
        ::poll(waiting.data(), waiting.size(), -1);
        signalfd_siginfo came{};
        eventfd_t wakes = 0;
        bool const isSignal = isInnermost && ::read(signals_, &came, sizeof came) > 0;
        static_cast<void>(::eventfd_read(wakeup_, &wakes));
        if (isRaised_.exchange(false) || isSignal) {
            told_();
        }
    }
}

} // namespace trs::tools
