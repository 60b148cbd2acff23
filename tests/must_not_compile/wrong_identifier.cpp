// expect: the identifier is not the CRC-32 of the interface name
#include "tests/must_not_compile/Lamp.h"

template <>
struct Operations<LampClient>
#ifdef CONTROL
    : OperationList<LampClient, LAMP, Operation<0, &LampClient::isLit>> {
};
#else
    : OperationList<LampClient, LAMP + 1, Operation<0, &LampClient::isLit>> {
};
#endif
static_assert(Operations<LampClient>::count == 1);
