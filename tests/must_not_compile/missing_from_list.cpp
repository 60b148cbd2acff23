// expect: the operation is missing from its class's list
#include "tests/must_not_compile/Lamp.h"

template <>
struct Operations<LampClient>
#ifdef CONTROL
    : OperationList<LampClient, LAMP, Operation<0, &LampClient::isLit>, Operation<1, &LampClient::light>> {
};
#else
    : OperationList<LampClient, LAMP, Operation<0, &LampClient::isLit>> {
};
#endif

void LampClient::light() const { call<&LampClient::light>(*this); }
