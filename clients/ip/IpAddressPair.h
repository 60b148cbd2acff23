// IpAddressPair: a peer's address in two forms, as IpNodeClient lists adjacent base stations and serving gateways.
#pragma once

#include "rmi/Record.h"
#include "rmi/TipprmiArray.h"

struct IpAddressPair {
    TipprmiArray<unsigned short, 8> ipv6Address; // a group of 16 bits per element
    TipprmiArray<short, 4> ipv4Address;          // an octet per element
};

template <>
struct RecordFields<IpAddressPair> : Fields<&IpAddressPair::ipv6Address, &IpAddressPair::ipv4Address> {};
