#include "broker/machine/Thread.h"

#include <csignal>
#include <cstddef>

namespace trs {

namespace {

constexpr std::size_t scarceStack = std::size_t{512} * 1024;

} // namespace

void* Thread::run(void* thread)
{
    static_cast<Thread*>(thread)->body_();
    return nullptr;
}

bool Thread::start(std::function<void()> body)
{
    join();
    body_ = std::move(body);

    pthread_attr_t attributes;
    ::pthread_attr_init(&attributes);
    if constexpr (sizeof(void*) < 8) {
        ::pthread_attr_setstacksize(&attributes, scarceStack);
    }
    sigset_t all;
    sigset_t former;
    ::sigfillset(&all);
    for (int const fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP, SIGSYS}) {
        ::sigdelset(&all, fault);
    }
    ::pthread_sigmask(SIG_SETMASK, &all, &former);
    isStarted_ = ::pthread_create(&thread_, &attributes, &Thread::run, this) == 0;
    ::pthread_sigmask(SIG_SETMASK, &former, nullptr);
    ::pthread_attr_destroy(&attributes);
    return isStarted_;
}

void Thread::join()
{
    if (isStarted_) {
        ::pthread_join(thread_, nullptr);
        isStarted_ = false;
    }
}

} // namespace trs
