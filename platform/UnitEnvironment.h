// What the unit's environment tells, and what it is told.
#pragma once

#include <string>

// Fills in the IPv4 address of the local management port, most significant octet first. An octet that the platform
// does not know is left as it was.
int envInfoIpAddr(unsigned char address[4]);

class NmaConfigurator {
public:
    // The product type: 1 is a WCDMA unit.
    static int getProdType();
};

enum OSWrapUsrEnvIpAddrType {
    OSWRAP_USR_ENV_PUBLIC_IP_ADDR = 0,
};

namespace OSWrap {

class UserEnvironment {
public:
    // Sets one of the unit's addresses, in dotted form.
    static void setIpAddr(OSWrapUsrEnvIpAddrType type, std::string const& address);
    // Sets the mask of the transport private IP address.
    static void setTrsPrivIpAddrMask();
};

} // namespace OSWrap
