// expect: no match for .operator>>|invalid operands to binary expression
#include "clients/services/FaultServiceClient.h"
#include "rmi/StreamOperators.h"

void use(TipprmiStream& stream, FaultServiceClient::ConditionNotification& notification)
{
    stream << notification;
#ifndef CONTROL
    stream >> notification;
#endif
}
