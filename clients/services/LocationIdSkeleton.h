// LocationIdSkeleton: the server's side of LocationIdClient.
#pragma once

#include "clients/services/LocationIdClient.h"
#include "rmi/Dispatch.h"

#include <string>

class LocationIdSkeleton;
extern template class TypedSkeleton<LocationIdSkeleton, LocationIdClient>;

class LocationIdSkeleton : public TypedSkeleton<LocationIdSkeleton, LocationIdClient> {
public:
    using TypedSkeleton::TypedSkeleton;

    virtual std::string toString() = 0;
    virtual std::string toKey() = 0;
    virtual bool containsType(unsigned long const& type) = 0;
    virtual bool equals(LocationIdClient const& other) = 0;
};

template <>
struct Operations<LocationIdClient>
    : OperationList<LocationIdClient, 0xd98a2bbd,
                    LocalOperation<0, &LocationIdClient::toString, &LocationIdSkeleton::toString>,
                    LocalOperation<1, &LocationIdClient::toKey, &LocationIdSkeleton::toKey>,
                    LocalOperation<2, &LocationIdClient::containsType, &LocationIdSkeleton::containsType>,
                    LocalOperation<3, &LocationIdClient::equals, &LocationIdSkeleton::equals>> {};
