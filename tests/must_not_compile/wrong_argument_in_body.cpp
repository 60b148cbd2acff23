// expect: cannot bind .*to a value of
#include "clients/services/PerformanceServiceSkeleton.h"
#include "rmi/Call.h"

bool use(PerformanceServiceClient const& service, unsigned long const& id)
{
#ifdef CONTROL
    unsigned long value = 0;
#else
    unsigned short value = 0;
#endif
    return call<&PerformanceServiceClient::getCurrentData>(service, id, value);
}
