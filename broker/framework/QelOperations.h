// The operation lists of the framework's value proxies on this platform.
#pragma once

#include "platform/QelBaseClient.h"
#include "platform/QelFabricBaseClient.h"
#include "platform/QelLongClient.h"
#include "platform/QelPersistentObjectClient.h"
#include "platform/QelShortClient.h"
#include "rmi/Operations.h"
#include "rmi/TipprmiSequence.h"

#include <string>

template <>
struct Operations<QelBaseClient>
    : OperationList<QelBaseClient, 0x5df7b79b, Operation<0, &QelBaseClient::isReadonly>,
                    Operation<1, &QelBaseClient::isPersistent>, Operation<2, &QelBaseClient::isReplicated>,
                    Operation<3, &QelBaseClient::isInitialised>, Operation<4, &QelBaseClient::getInitStatus>,
                    Operation<5, &QelBaseClient::clear>, Operation<6, &QelBaseClient::internalClear>> {};

template <>
struct Operations<QelLongClient>
    : OperationList<QelLongClient, 0xa6d4e092, Operation<0, &QelLongClient::get>, Operation<1, &QelLongClient::set>,
                    Operation<2, &QelLongClient::internalGet>, Operation<3, &QelLongClient::internalSet>> {};

template <>
struct Operations<QelShortClient>
    : OperationList<QelShortClient, 0xd2ddc8e9, Operation<0, &QelShortClient::get>, Operation<1, &QelShortClient::set>,
                    Operation<2, &QelShortClient::internalGet>, Operation<3, &QelShortClient::internalSet>> {};

template <>
struct Operations<QelFabricBaseClient>
    : OperationList<QelFabricBaseClient, 0xb079ee19, Operation<0, &QelFabricBaseClient::getSize>,
                    Operation<1, &QelFabricBaseClient::getIndexes>> {};

template <>
struct Operations<QelPersistentObjectClient>
    : OperationList<QelPersistentObjectClient, 0xfb5b96f9, Operation<0, &QelPersistentObjectClient::sendChangeEvent>,
                    Operation<1, &QelPersistentObjectClient::serialise>,
                    Operation<2, &QelPersistentObjectClient::deserialise>> {};
