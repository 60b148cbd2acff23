// expect: the skeleton's operation has another signature than the proxy's
#include "tests/must_not_compile/Lamp.h"

template <>
struct Operations<LampClient>
#ifdef CONTROL
    : OperationList<LampClient, LAMP, Operation<0, &LampClient::isLit>, Operation<1, &LampClient::light>> {
};
#else
    : OperationList<LampClient, LAMP, LocalOperation<0, &LampClient::isLit, &LampSkeleton::isLit>,
                    LocalOperation<1, &LampClient::light, &LampSkeleton::light>> {
};
#endif
static_assert(Operations<LampClient>::count == 2);
