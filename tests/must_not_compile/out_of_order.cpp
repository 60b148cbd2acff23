// expect: operations are listed once each, in index order
#include "tests/must_not_compile/Lamp.h"

template <>
struct Operations<LampClient>
#ifdef CONTROL
    : OperationList<LampClient, LAMP, Operation<0, &LampClient::isLit>, Operation<1, &LampClient::light>> {
};
#else
    : OperationList<LampClient, LAMP, Operation<1, &LampClient::light>, Operation<0, &LampClient::isLit>> {
};
#endif
static_assert(Operations<LampClient>::count == 2);
