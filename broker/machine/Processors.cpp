#include "broker/machine/Processors.h"

#include <sched.h>

unsigned trs::processorCount()
{
    static unsigned const count = [] {
        cpu_set_t allowed;
        CPU_ZERO(&allowed);
        // Fails on machines with more processors than the set has room for.
        return ::sched_getaffinity(0, sizeof allowed, &allowed) == 0 ? static_cast<unsigned>(CPU_COUNT(&allowed)) : 2U;
    }();
    return count;
}
