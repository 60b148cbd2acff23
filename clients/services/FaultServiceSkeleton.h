// FaultServiceSkeleton: the server's side of FaultServiceClient.
#pragma once

#include "clients/services/ConditionClient.h"
#include "clients/services/FaultServiceClient.h"
#include "rmi/Dispatch.h"

class FaultServiceSkeleton;
extern template class TypedSkeleton<FaultServiceSkeleton, FaultServiceClient>;

class FaultServiceSkeleton : public TypedSkeleton<FaultServiceSkeleton, FaultServiceClient> {
public:
    using TypedSkeleton::TypedSkeleton;

    virtual AdminStateClient getAdminState() = 0;
    virtual long getOperState() = 0;
    virtual bool getWorkingState() = 0;
    virtual FaultServiceClient getConditionGrp() = 0;
    virtual void setOperState(long const& state) = 0;
    virtual void setWorkingState(bool const& working) = 0;
    virtual bool isAnySuppressed() = 0;
    virtual bool isAnyActive() = 0;
    virtual bool conditionActive() = 0;
    virtual void removeAllConditions() = 0;
    virtual void notificationFromCondition(FaultServiceClient::ConditionNotification const& notification,
                                           ConditionClient const& condition) = 0;
};

template <>
struct Operations<FaultServiceClient>
    : OperationList<
          FaultServiceClient, 0x04b042b1,
          LocalOperation<0, &FaultServiceClient::getAdminState, &FaultServiceSkeleton::getAdminState>,
          LocalOperation<1, &FaultServiceClient::getOperState, &FaultServiceSkeleton::getOperState>,
          LocalOperation<2, &FaultServiceClient::getWorkingState, &FaultServiceSkeleton::getWorkingState>,
          LocalOperation<3, &FaultServiceClient::getConditionGrp, &FaultServiceSkeleton::getConditionGrp>,
          LocalOperation<4, &FaultServiceClient::setOperState, &FaultServiceSkeleton::setOperState>,
          LocalOperation<5, &FaultServiceClient::setWorkingState, &FaultServiceSkeleton::setWorkingState>,
          LocalOperation<6, &FaultServiceClient::isAnySuppressed, &FaultServiceSkeleton::isAnySuppressed>,
          LocalOperation<7, &FaultServiceClient::isAnyActive, &FaultServiceSkeleton::isAnyActive>,
          LocalOperation<8, &FaultServiceClient::conditionActive, &FaultServiceSkeleton::conditionActive>,
          LocalOperation<9, &FaultServiceClient::removeAllConditions, &FaultServiceSkeleton::removeAllConditions>,
          LocalOperation<10, &FaultServiceClient::notificationFromCondition,
                         &FaultServiceSkeleton::notificationFromCondition>> {};
