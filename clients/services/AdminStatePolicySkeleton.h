// AdminStatePolicySkeleton: the server's side of AdminStatePolicyClient.
#pragma once

#include "clients/services/AdminStatePolicyClient.h"
#include "rmi/Dispatch.h"

class AdminStatePolicySkeleton;
extern template class TypedSkeleton<AdminStatePolicySkeleton, AdminStatePolicyClient>;

class AdminStatePolicySkeleton : public TypedSkeleton<AdminStatePolicySkeleton, AdminStatePolicyClient> {
public:
    using TypedSkeleton::TypedSkeleton;

    virtual bool getState() = 0;
    virtual void notifyStateChange() = 0;
};

template <>
struct Operations<AdminStatePolicyClient>
    : OperationList<
          AdminStatePolicyClient, 0x35accae7,
          LocalOperation<0, &AdminStatePolicyClient::getState, &AdminStatePolicySkeleton::getState>,
          LocalOperation<1, &AdminStatePolicyClient::notifyStateChange, &AdminStatePolicySkeleton::notifyStateChange>> {
};
