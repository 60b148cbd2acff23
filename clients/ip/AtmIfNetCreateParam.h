// AtmIfNetCreateParam: what IpNodeClient::createAtmIfNet() makes an interface from.
#pragma once

#include "clients/ip/IfNetCreateParam.h"
#include "clients/transmission/Aal5VirtualChannelTrailTpClient.h"
#include "rmi/Record.h"
#include "rmi/TipprmiArray.h"

// Proxies only send it. Addresses have an octet per element; the server decides what the second one means.
struct AtmIfNetCreateParam {
    Aal5VirtualChannelTrailTpClient vcTtp; // carries the interface; AtmIfNetClient::getVcTtp() hands it out again
    TipprmiArray<short, 4> ipAddress;
    TipprmiArray<short, 4> address2;
    bool llcSnap; // whether LLC/SNAP encapsulation is used
    IfNetCreateParam ifNetParams;
};

template <>
struct RecordFields<AtmIfNetCreateParam>
    : Fields<&AtmIfNetCreateParam::vcTtp, &AtmIfNetCreateParam::ipAddress, &AtmIfNetCreateParam::address2,
             &AtmIfNetCreateParam::llcSnap, &AtmIfNetCreateParam::ifNetParams> {};

template <>
inline constexpr bool isSentOnly<AtmIfNetCreateParam> = true;
