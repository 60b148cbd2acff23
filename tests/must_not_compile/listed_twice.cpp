// expect: an operation is listed twice
#include "tests/must_not_compile/Lamp.h"

template <>
struct Operations<LampClient>
#ifdef CONTROL
    : OperationList<LampClient, LAMP, Operation<0, &LampClient::isLit>, Operation<1, &LampClient::light>> {
};
#else
    : OperationList<LampClient, LAMP, Operation<0, &LampClient::isLit>, Operation<1, &LampClient::light>,
                    Operation<2, &LampClient::isLit>> {
};
#endif
static_assert(Operations<LampClient>::count == 2);
