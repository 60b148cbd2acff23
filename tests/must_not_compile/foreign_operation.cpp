// expect: a listed operation belongs to another class
#include "tests/must_not_compile/Lamp.h"

template <>
struct Operations<LampClient>
#ifdef CONTROL
    : OperationList<LampClient, LAMP, Operation<0, &LampClient::isLit>> {
};
#else
    : OperationList<LampClient, LAMP, Operation<0, &LampClient::isLit>, Operation<1, &DimmerClient::dim>> {
};
#endif
static_assert(Operations<LampClient>::count != 0);
