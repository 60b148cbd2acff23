// expect: the implementation does not have the operation's signature
#include "clients/services/PerformanceServiceSkeleton.h"
#include "rmi/Servant.h"

void use(Servant& servant)
{
#ifdef CONTROL
    servant.on<&PerformanceServiceClient::getElapsedTime>([](unsigned long& elapsed) { return ++elapsed != 0; });
#else
    servant.on<&PerformanceServiceClient::getElapsedTime>([](long& elapsed) { return ++elapsed != 0; });
#endif
}
