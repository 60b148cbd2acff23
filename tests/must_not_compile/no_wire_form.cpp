// expect: use of deleted function|overload resolution selected deleted operator
#include "rmi/StreamOperators.h"

void use(TipprmiStream& stream, double value)
{
#ifdef CONTROL
    stream << static_cast<long>(value);
#else
    stream << value;
#endif
}
