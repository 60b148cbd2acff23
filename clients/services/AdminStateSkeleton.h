// AdminStateSkeleton: the server's side of AdminStateClient; get() and set() come with QelLongSkeleton.
#pragma once

#include "clients/services/AdminStateClient.h"
#include "rmi/Dispatch.h"

class AdminStateSkeleton;
extern template class TypedSkeleton<AdminStateSkeleton, AdminStateClient, QelLongSkeleton>;

class AdminStateSkeleton : public TypedSkeleton<AdminStateSkeleton, AdminStateClient, QelLongSkeleton> {
public:
    using TypedSkeleton::TypedSkeleton;

    virtual TipprmiSequence<AdminStatePolicyClient> getPolicies() = 0;
    virtual bool getPermissionState() = 0;
    virtual void insertPolicy(AdminStatePolicyClient const& policy) = 0;
    virtual void removePolicy(AdminStatePolicyClient const& policy) = 0;
    virtual void notifyPermissionStateChange() = 0;
};

template <>
struct Operations<AdminStateClient>
    : OperationList<AdminStateClient, 0x50330cd4,
                    LocalOperation<2, &AdminStateClient::getPolicies, &AdminStateSkeleton::getPolicies>,
                    LocalOperation<3, &AdminStateClient::getPermissionState, &AdminStateSkeleton::getPermissionState>,
                    LocalOperation<4, &AdminStateClient::insertPolicy, &AdminStateSkeleton::insertPolicy>,
                    LocalOperation<5, &AdminStateClient::removePolicy, &AdminStateSkeleton::removePolicy>,
                    LocalOperation<6, &AdminStateClient::notifyPermissionStateChange,
                                   &AdminStateSkeleton::notifyPermissionStateChange>> {};
