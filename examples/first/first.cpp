// Reads the MTU of a unit's IP node and the addresses of its transport interface.
#include "broker/Broker.h"
#include "clients/ip/IpNodeClient.h"

#include <cstdio>

int main(int argc, char** argv)
{
    trs::Broker::instance().addPeer(argc > 1 ? argv[1] : "unix:/tmp/trssim.sock");
    IpNodeClient const node{TipprmiOID(IpNodeClient::IPNODE_OID)};
    long mtu = 0;
    EthIfNetClient transport;
    TipprmiSequence<IfNetClient::IpAddrInfo> addresses;
    if (!(node.getMtu(mtu) == GetClient::OK && node.getTransportIfNet(transport) == GetClient::OK &&
          transport.getIpAddrSequence(addresses) == GetClient::OK)) {
        std::puts("the unit does not answer");
        return 1;
    }
    std::printf("MTU %ld\n", mtu);
    for (IfNetClient::IpAddrInfo const& each : addresses) {
        std::printf("address %d.%d.%d.%d\n", each.ipAddress[0], each.ipAddress[1], each.ipAddress[2],
                    each.ipAddress[3]);
    }
}
