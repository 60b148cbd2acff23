// expect: invalid conversion from|could not bind to an lvalue
#include "clients/services/ConditionClient.h"

void use(ConditionClient const& condition)
{
#ifdef CONTROL
    condition.setPriority(10);
#else
    condition.setPriority("10");
#endif
}
