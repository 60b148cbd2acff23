// expect: the skeleton's operation has another name than the proxy's
#include "tests/must_not_compile/Lamp.h"

template <>
struct Operations<LampClient>
#ifdef CONTROL
    : OperationList<LampClient, LAMP, LocalOperation<0, &LampClient::isLit, &LampSkeleton::isLit>> {
};
#else
    : OperationList<LampClient, LAMP, LocalOperation<0, &LampClient::isLit, &LampSkeleton::isOut>> {
};
#endif
static_assert(Operations<LampClient>::count == 1);
