// ApplicationObjectSenaPolicySkeleton: the server's side of ApplicationObjectSenaPolicyClient.
#pragma once

#include "rmi/ApplicationObjectClient.h"
#include "rmi/ApplicationObjectSenaPolicyClient.h"
#include "rmi/Dispatch.h"

class ApplicationObjectSenaPolicySkeleton;
extern template class TypedSkeleton<ApplicationObjectSenaPolicySkeleton, ApplicationObjectSenaPolicyClient>;

class ApplicationObjectSenaPolicySkeleton
    : public TypedSkeleton<ApplicationObjectSenaPolicySkeleton, ApplicationObjectSenaPolicyClient> {
public:
    using TypedSkeleton::TypedSkeleton;

    virtual bool getState(ApplicationObjectClient const& application) = 0;
};

template <>
struct Operations<ApplicationObjectSenaPolicyClient>
    : OperationList<ApplicationObjectSenaPolicyClient, 0xf77e6ede,
                    LocalOperation<0, &ApplicationObjectSenaPolicyClient::getState,
                                   &ApplicationObjectSenaPolicySkeleton::getState>> {};
