// What the proxies of the IP side send and make of replies, byte by byte.
#include "clients/ip/IpNodeClient.h"
#include "clients/ip/IpRouteEntryClient.h"
#include "tests/support/Exchange.h"

#include <limits>

namespace {

using namespace golden;
using Address = TipprmiArray<short, 4>;
using Bfd = IfNetBfdIpIubClient;
using Routes = IpRoutingTableClient;
using VlanMap = TipprmiArray<VlanMapClient::VlanMapEntryType, 7>;
using VlanParams = VlanIfNetClient::VlanIfNetCreateParams;

Address const station = arrayOf<short>(10, 0, 0, 1);
Address const mask = arrayOf<short>(255, 255, 255, 0);
Address const gateway = arrayOf<short>(192, 168, 1, 254);
Address const peer = arrayOf<short>(172, 16, 0, 2);
std::string const stationBytes = "00 0A 00 00 00 00 00 01";
std::string const maskBytes = "00 FF 00 FF 00 FF 00 00";
std::string const gatewayBytes = "00 C0 00 A8 00 01 00 FE";
std::string const peerBytes = "00 AC 00 10 00 00 00 02";

IfNetClient::IpAddrInfo const addresses{station, mask, gateway, peer};
std::string const addressesBytes = bytes({stationBytes, maskBytes, gatewayBytes, peerBytes});
TipprmiArray<unsigned short, 8> const ipv6 = arrayOf<unsigned short>(0x2001, 0xdb8, 0, 0, 0, 0, 0, 0xffff);
std::string const pairBytes = bytes({"20 01 0D B8 00 00 00 00 00 00 00 00 00 00 FF FF", stationBytes});
DsvmEntryClient::values control() { return {DsvmEntryClient::CONTROL, 100, 46}; }
std::string const controlBytes = "00 00 00 07 43 4F 4E 54 52 4F 4C 00 64 2E";
Routes::IpRouteEntryCfg const routeCfg{station, mask, gateway};
std::string const routeCfgBytes = bytes({stationBytes, maskBytes, gatewayBytes});
Routes::IpRoute const route{.destination = station,
                            .netmask = mask,
                            .auxLong = 0xfedcba98,
                            .flags = Routes::RTF__PROTO1 | Routes::RTF__STATIC | Routes::RTF__UP,
                            .auxShort = -2,
                            .type = valueOf<Routes::IpRouteType>(-3),
                            .name = "eth",
                            .address3 = gateway,
                            .linkAddress = arrayOf<short>(0, 64, 67, 255, 254, 1),
                            .address4 = peer};
std::string const routeBytes =
    bytes({stationBytes, maskBytes, "FE DC BA 98 88 01 FF FE FF FF FF FD 00 00 00 03 65 74 68", gatewayBytes,
           "00 00 00 40 00 43 00 FF 00 FE 00 01", peerBytes});
std::string const timerBytes = "00 00 01 F4 00 00 00 02 FF FF FF FF";

// Three of these with the bits 1, 2 and 4 tell all seven flags from each other.
VlanParams vlanParams(int bit)
{
    return {.vlanId = 100,
            .committedInfoRate = 1000,
            .sir = 2000,
            .vlanShapingEnabled = (1 & bit) != 0,
            .ipAddressInfo = {.ipAddress = station, .address2 = mask},
            .shaperBurstSize = 1522,
            .bfdInfo = {.bfdActivation = (2 & bit) != 0,
                        .bfdAdminUp = (3 & bit) != 0,
                        .bfdActivation2 = (4 & bit) != 0,
                        .bfdAdminUp2 = (5 & bit) != 0,
                        .bfdDestAddress = gateway,
                        .bfdDestAddress2 = peer,
                        .bfdSourceUdpPort = 3784,
                        .bfdTypeUdpPort = valueOf<Bfd::BfdTypePort>(7),
                        .bfdTimer = {500, 2, -1}},
            .vlanInstanceId = 9,
            .qosEnabled = (6 & bit) != 0,
            .cesopsn = (7 & bit) != 0};
}
std::string vlanParamsBytes(std::string const& shaping, std::string const& bfd, std::string const& qosAndCesopsn)
{
    return bytes({"00 64 00 00 03 E8 00 00 07 D0", shaping, stationBytes, maskBytes, "00 00 05 F2", bfd, gatewayBytes,
                  peerBytes, "0E C8 00 00 00 07", timerBytes, "00 00 00 09", qosAndCesopsn});
}

template <class T>
concept Readable = requires(TipprmiStream& stream, T& value) { stream >> value; };
static_assert(Readable<VlanIfNetClient::IpAddressInfo> && Readable<Routes::IpRoute>);
static_assert(!Readable<AtmIfNetCreateParam> && !Readable<IfNetCreateParam> && !Readable<Ip3IfNetClient::Cfg> &&
                  !Readable<VlanIfNetClient::BfdInfo> && !Readable<VlanParams>,
              "some records are only sent");

TEST(IpInterfaces, send)
{
    VlanIfNetClient vlan;
    std::string index;
    expectRequests({
        {[](Recorder& to) { IfNetClient(&to).setMtu(1500); }, {0xb86aeff7, 3, "00 00 05 DC"}},
        {[](Recorder& to) { IfNetClient(&to).setMtu(-1); }, {0xb86aeff7, 3, "FF FF FF FF"}},
        {[](Recorder& to) { IfNetClient(&to).setInternalMtu(std::numeric_limits<int>::min()); },
         {0xb86aeff7, 5, "80 00 00 00"}},
        {[](Recorder& to) { IfNetClient(&to).setFlags(IfNetClient::IFF__UP | IfNetClient::IFF__RUNNING); },
         {0xb86aeff7, 7, "00 41"}},
        {[](Recorder& to) { IfNetClient(&to).setFlags(IfNetClient::IFF__MULTICAST); }, {0xb86aeff7, 7, "80 00"}},
        {[](Recorder& to) { IfNetClient(&to).setDiscardPublic(true); }, {0xb86aeff7, 11, yes}},
        {[](Recorder& to) { IfNetClient(&to).setIpAddrSequence({}); }, {0xb86aeff7, 13, none}},
        {[](Recorder& to) {
             IfNetClient(&to).setIpAddrSequence(sequenceOf({addresses, addresses}));
         },
         {0xb86aeff7, 13, bytes({"00 00 00 02", addressesBytes, addressesBytes})}},
        {[](Recorder& to) { IfNetClient(&to).setPublicIpAddr(addresses); }, {0xb86aeff7, 16, addressesBytes}},
        {[](Recorder& to) { Bfd(&to).setBfdSourceUdpPort(65535); }, {0x4c642b02, 1, "FF FF"}},
        {[](Recorder& to) { Bfd(&to).setBfdTypeUdpPort(valueOf<Bfd::BfdTypePort>(-2)); },
         {0x4c642b02, 3, "FF FF FF FE"}},
        {[](Recorder& to) { Bfd(&to).setBfdDestAddress2(station); }, {0x4c642b02, 13, stationBytes}},
        {[](Recorder& to) {
             Bfd(&to).setBfdTimer({500, 2, -1});
         },
         {0x4c642b02, 17, timerBytes}},
        {[](Recorder& to) {
             BfdIpIubClient(&to).setBfdTimer({500, 2, -1});
         },
         {0xc5fa8f46, 7, timerBytes}},
        // Inherited operations stay those of the class that declares them.
        {[](Recorder& to) { EthIfNetClient(&to).setMtu(1500); }, {0xb86aeff7, 3, "00 00 05 DC"}},
        {[](Recorder& to) { VlanIfNetClient(&to).getFaultSvc(); }, {0xe80e97c6, 4, ""}},
        {[](Recorder& to) { VlanIfNetFabricClient(&to).getSize(); }, {0xb079ee19, 0, ""}},

        {[](Recorder& to) { EthIfNetClient(&to).resetIpAddrSequence(); }, {0x86977205, 0, ""}},
        {[&](Recorder& to) { EthIfNetClient(&to).createVlan(vlanParams(1), vlan); },
         {0x86977205, 10, vlanParamsBytes(yes, bytes({no, yes, no, yes}), bytes({no, yes}))}},
        {[&](Recorder& to) { EthIfNetClient(&to).getVlanIfNet(100, vlan); }, {0x86977205, 12, "00 64"}},
        {[](Recorder& to) { EthIfNetClient(&to).recordDeviceParams(1, 4294967295); },
         {0x86977205, 17, "00 00 00 01 FF FF FF FF"}},
        {[](Recorder& to) { EthIfNetClient(&to).setLinks({}); }, {0x86977205, 19, none}},
        {[](Recorder& to) {
             EthIfNetClient(&to).setLinks(sequenceOf({EthLinkClient(TipprmiOID("a")), EthLinkClient()}));
         },
         {0x86977205, 19, bytes({"00 00 00 02", referenceToA, unbound})}},
        {[](Recorder& to) {
             EthIfNetClient(&to).setVlanTags(sequenceOf<unsigned short>({1, 4094}));
         },
         {0x86977205, 23, "00 00 00 02 00 01 0F FE"}},

        {[](Recorder& to) { VlanIfNetClient(&to).setVlanId(100); }, {0x0172a837, 0, "00 64"}},
        {[](Recorder& to) {
             VlanIfNetClient(&to).setIpAddressInfo({station, mask});
         },
         {0x0172a837, 8, bytes({stationBytes, maskBytes})}},
        {[&](Recorder& to) { VlanIfNetFabricClient(&to).retrieveNext("ab", index); },
         {0xf39394f7, 2, "00 00 00 02 61 62"}},
        {[](Recorder& to) { VlanIfNetFabricClient(&to).create("ab", vlanParams(2)); },
         {0xf39394f7, 4,
          bytes({"00 00 00 02 61 62", vlanParamsBytes(no, bytes({yes, yes, no, no}), bytes({yes, yes}))})}},
        {[&](Recorder& to) { VlanIfNetFabricClient(&to).createWithIndex(index, vlanParams(4)); },
         {0xf39394f7, 5, vlanParamsBytes(no, bytes({no, no, yes, yes}), bytes({yes, yes}))}},
        {[](Recorder& to) { VlanIfNetFabricClient(&to).destroyByInterface(VlanIfNetClient(TipprmiOID("bc"))); },
         {0xf39394f7, 7, referenceToBc}},
        {[](Recorder& to) { VlanMapClient(&to).setVlanMap(VlanMap{}); },
         {0x89552756, 0, repeated(7, bytes({"00 00", unbound}))}},
        {[](Recorder& to) {
             VlanMap map{};
             map[VlanMapClient::VT_FPR] = {4094, IfNetClient(TipprmiOID("a"))};
             VlanMapClient(&to).setVlanMap(map);
         },
         {0x89552756, 0, bytes({repeated(6, bytes({"00 00", unbound})), "0F FE", referenceToA})}},
        {[](Recorder& to) {
             DiffServToVlanMapClient(&to).setVlanMapSequence(sequenceOf({control(), {"", 1, 255}}));
         },
         {0x7ca4615e, 3, bytes({"00 00 00 02", controlBytes, "00 00 00 00 00 01 FF"})}},
        {[](Recorder& to) { DsvmEntryClient(&to).init(control()); }, {0x50b86c2a, 0, controlBytes}},
        {[](Recorder& to) { TransportModeParClient(&to).setMinSctpPort(TransportModeParClient::MIN_SCTP_PORT_MAX); },
         {0xd2fe2dc5, 3, "00 00 FF FE"}},
    });
}

TEST(IpNode, sends)
{
    constexpr unsigned long classId = 0x644e82af;
    AtmIfNetClient const atm(TipprmiOID("a"));
    AtmIfNetClient newAtm;
    Ip3IfNetClient newIp3;
    IpRoutingTableClient table;
    Address first{};
    Address second{};
    unsigned long number = 0;
    std::string text;
    AtmIfNetCreateParam params{
        .vcTtp = Aal5VirtualChannelTrailTpClient(TipprmiOID("bc")),
        .ipAddress = station,
        .address2 = gateway,
        .llcSnap = true,
        .ifNetParams = {.mtu = -2, .flags = 0x8041, .discardPrivate = false, .discardPublic = true}};
    AtmIfNetCreateParam otherParams = params;
    otherParams.ifNetParams.discardPrivate = true;
    otherParams.ifNetParams.discardPublic = false;
    Ip3IfNetClient::Cfg const ip3{sequenceOf({addresses}), Mlp3EndpointClient(TipprmiOID("bc"))};
    expectRequests({
        {[](Recorder& to) { IpNodeClient(&to).setTransportMode(IpNodeClient::TRANSPORT_MODE_IUBIP); },
         {classId, 1, "00 00 00 03"}},
        {[](Recorder& to) { IpNodeClient(&to).finalize(); }, {classId, 2, ""}},
        {[&](Recorder& to) { IpNodeClient(&to).getAtmIfNet(IpNodeClient::ATMPHYSIFNAME, newAtm); },
         {classId, 9, "00 00 00 08 61 74 6D 70 68 79 73 30"}},
        {[&](Recorder& to) { IpNodeClient(&to).getDedicatedIpRoutingTable(table, 1); }, {classId, 14, "00 00 00 01"}},
        {[](Recorder& to) { IpNodeClient(&to).setIpConfig(IpNodeClient::BTS_ID, station, mask, 4294967295, "xy"); },
         {classId, 18, bytes({"00 00 00 03 42 54 53", stationBytes, maskBytes, "FF FF FF FF", "00 00 00 02 78 79"})}},
        {[&](Recorder& to) { IpNodeClient(&to).getIpConfig("", first, second, number, text); }, {classId, 20, none}},
        {[](Recorder& to) { IpNodeClient(&to).setBtsPrimaryIpAddress(station, mask); },
         {classId, 44, bytes({stationBytes, maskBytes})}},
        {[](Recorder& to) { IpNodeClient(&to).setPrimIpAdr(mask, station); },
         {classId, 45, bytes({maskBytes, stationBytes})}},
        {[](Recorder& to) {
             IpNodeClient(&to).setAdjEnbIpAddressList(sequenceOf({station, peer}));
         },
         {classId, 32, bytes({"00 00 00 02", stationBytes, peerBytes})}},
        {[](Recorder& to) {
             IpNodeClient(&to).setAdjEnbIpAddressSeq(sequenceOf<IpAddressPair>({{ipv6, station}}));
         },
         {classId, 34, bytes({"00 00 00 01", pairBytes})}},
        {[](Recorder& to) { IpNodeClient(&to).setSgwIpAddressSeq({}); }, {classId, 36, none}},
        {[&](Recorder& to) { IpNodeClient(&to).createAtmIfNet(params, newAtm); },
         {classId, 48, bytes({referenceToBc, stationBytes, gatewayBytes, yes, "FF FF FF FE 80 41", no, yes})}},
        {[&](Recorder& to) { IpNodeClient(&to).createAtmIfNet(otherParams, newAtm); },
         {classId, 48, bytes({referenceToBc, stationBytes, gatewayBytes, yes, "FF FF FF FE 80 41", yes, no})}},
        {[&](Recorder& to) { IpNodeClient(&to).deleteAtmIfNet(atm); }, {classId, 49, referenceToA}},
        {[&](Recorder& to) { IpNodeClient(&to).configureFromBootp(atm, station, mask); },
         {classId, 50, bytes({referenceToA, stationBytes, maskBytes})}},
        {[&](Recorder& to) { IpNodeClient(&to).createIp3IfNet(ip3, newIp3); },
         {classId, 51, bytes({"00 00 00 01", addressesBytes, referenceToBc})}},
        {[](Recorder& to) { IpNodeClient(&to).setQubomode(valueOf<IpNodeClient::Qubomode>(2147483647)); },
         {classId, 55, "7F FF FF FF"}},
        {[](Recorder& to) { IpNodeClient(&to).pingRemoteEnd(station, peer, -1); },
         {classId, 58, bytes({stationBytes, peerBytes, "FF FF FF FF"})}},
        {[](Recorder& to) { IpNodeClient(&to).triggerCheckAndMarkDeferredRoutes(); }, {classId, 64, ""}},
    });
}

// Servers know the entries and the objects by these texts.
TEST(IpNode, namesItsConfigurationEntries)
{
    using N = IpNodeClient;
    std::pair<std::string, std::string> const entries[] = {{N::BTS_ID, N::BTS_DESCR},
                                                           {N::QUBO_ID, N::QUBO_DESCR},
                                                           {N::RNC_ID, N::RNC_DESCR},
                                                           {N::RET1_ID, N::RET1_DESCR},
                                                           {N::TAVI_ID, N::TAVI_DESCR},
                                                           {N::TRS_ID, N::TRS_DESCR},
                                                           {N::BFD_ID, N::BFD_DESCR},
                                                           {N::ICMP_ID, N::ICMP_DESCR},
                                                           {N::DEDICATED_OMS_ID, N::DEDICATED_OMS_DESCR},
                                                           {N::BTS_IP_PRIM_ID, N::BTS_IP_PRIM_DESCR},
                                                           {N::ASNGW1_ID, N::ASNGW1_DESCR},
                                                           {N::ASNGW2_ID, N::ASNGW2_DESCR},
                                                           {N::OMS_ID, N::OMS_DESCR},
                                                           {N::BASEBAND_ID, N::BASEBAND_DESCR},
                                                           {N::VOK_ID, N::VOK_DESCR},
                                                           {N::BSFUNC_1_ID, N::BSFUNC_1_DESCR},
                                                           {N::BSFUNC_2_ID, N::BSFUNC_2_DESCR},
                                                           {N::BSFUNC_3_ID, N::BSFUNC_3_DESCR},
                                                           {N::BSFUNC_4_ID, N::BSFUNC_4_DESCR},
                                                           {N::BSFUNC_5_ID, N::BSFUNC_5_DESCR},
                                                           {N::BSFUNC_6_ID, N::BSFUNC_6_DESCR},
                                                           {N::BTS_PRIMARY_ID, N::BTS_PRIMARY_DESCR}};
    std::string names;
    for (auto const& [name, description] : entries) {
        EXPECT_EQ(description, name);
        names += name + ' ';
    }
    EXPECT_EQ(names, "BTS QUBO RNC RET1 Lorbus TRS BFD ICMP DedicatedOMS btsSubnetIpPrimary asnGwIpAddrPrimary "
                     "asnGwIpAddrSecondary OMS Baseband VOK BS_FUNC1 BS_FUNC2 BS_FUNC3 BS_FUNC4 BS_FUNC5 BS_FUNC6 "
                     "btsIpPrimary ");
    EXPECT_EQ(N::BTS_IP_SEC_DESCR, "btsSubnetIpSecondary");

    EXPECT_EQ(N::IPNODE_OID, "IpNode");
    EXPECT_EQ(TransportModeParClient::TRANSPORT_MODE_PAR_OID, "TransportModePar");
    EXPECT_EQ(Bfd::IFNET_BFD_IP_IUB_OID, "IfNetBfdIpIub");
    EXPECT_EQ(BfdIpIubClient::BFD_IP_IUB_OID, "BfdIpIub");
}

TEST(Routing, sends)
{
    constexpr unsigned long classId = 0xdaf5930f;
    Routes::IpRoute nameless = route;
    nameless.name.clear();
    Address next{};
    IpRouteEntryClient::Cfg cfg{};
    expectRequests({
        {[](Recorder& to) { Routes(&to).applyIpRouteEntriesCfg({}); }, {classId, 2, none}},
        {[](Recorder& to) { Routes(&to).mergeIpRouteEntriesCfg(sequenceOf({routeCfg})); },
         {classId, 3, bytes({"00 00 00 01", routeCfgBytes})}},
        {[&](Recorder& to) { Routes(&to).getNexthop(station, true, next); }, {classId, 7, bytes({stationBytes, yes})}},
        {[](Recorder& to) { Routes(&to).createIpRoute(routeCfg); }, {classId, 10, routeCfgBytes}},
        {[&](Recorder& to) {
             Routes(&to).storeIpForwardingSequence(sequenceOf({route, nameless}));
         },
         {classId, 12,
          bytes({"00 00 00 02", routeBytes, stationBytes, maskBytes, "FE DC BA 98 88 01 FF FE FF FF FF FD 00 00 00 00",
                 gatewayBytes, "00 00 00 40 00 43 00 FF 00 FE 00 01", peerBytes})}},
        {[&](Recorder& to) { IpRouteEntryClient(&to).getRouteCfg(cfg); }, {0x9e6ab1b1, 0, ""}},
    });
}

TEST(IpSide, takesResultsAndOutArgumentsFromReplies)
{
    expectReplies({
        replyTo<&IfNetClient::getUnitName>(bytes({ok, "00 00 00 03 65 74 68"})),
        replyTo<&IfNetClient::getUnitNumber>(bytes({ok, "80 00"})),
        replyTo<&IfNetClient::getMtu>(bytes({ok, "80 00 00 00"})),
        replyTo<&IfNetClient::getFlags>(bytes({ok, "FF FF"})),
        replyTo<&IfNetClient::getDiscardPublic>(bytes({ok, yes})),
        replyTo<&IfNetClient::getIpAddrSequence>(bytes({ok, none})),
        replyTo<&IfNetClient::getIpAddrSequence>(bytes({ok, "00 00 00 02", addressesBytes, addressesBytes})),
        replyTo<&IfNetClient::getPrivateIpAddr>(bytes({ok, addressesBytes})),
        replyTo<&IfNetClient::getVokIpForSctp>(bytes({ok, stationBytes})),
        replyTo<&IfNetClient::getDownBfdCommon>(referenceToBc),
        replyTo<&Bfd::getBfdTypeUdpPort>(bytes({ok, "80 00 00 00"})),
        replyTo<&Bfd::getBfdTimer>(bytes({ok, timerBytes})),
        replyTo<&BfdIpIubClient::getBfdTimer>(bytes({ok, timerBytes})),
        replyTo<&EthIfNetClient::getEthernetAddress>(bytes({ok, "00 00 00 40 00 43 00 FF 00 FE 00 01"})),
        replyTo<&EthIfNetClient::getVlanTags>("00 00 00 02 00 01 0F FE"),
        replyTo<&EthIfNetClient::getLinks>(bytes({"00 00 00 02", referenceToA, unbound})),
        replyTo<&VlanIfNetClient::getIpAddressInfo>(bytes({ok, stationBytes, maskBytes})),
        replyTo<&VlanIfNetFabricClient::retrieve>(unbound),
        replyTo<&VlanIfNetFabricClient::retrieveFirst>(bytes({referenceToA, "00 00 00 01 31"})),
        replyTo<&VlanIfNetFabricClient::destroy>(""),
        replyTo<&VlanMapClient::getVlanMap>(bytes({repeated(6, bytes({"00 01", unbound})), "0F FE", referenceToA})),
        replyTo<&DiffServToVlanMapClient::getVlanMapSequence>(bytes({ok, "00 00 00 01", referenceToBc})),
        replyTo<&DsvmEntryClient::init>(yes),
        replyTo<&DsvmEntryClient::getValues>(bytes({ok, controlBytes})),
        replyTo<&TransportModeParClient::getMinUdpPort>(bytes({ok, "FF FF FF FF"})),

        replyTo<&IpNodeClient::setMtu>("00 00 00 07 00 00 00 01"), // subsystem 7 tells of a failure
        replyTo<&IpNodeClient::getRmAccess>(bytes({ok, referenceToA})),
        replyTo<&IpNodeClient::getIpConfig>(bytes({ok, stationBytes, maskBytes, "00 00 00 2A 00 00 00 02 78 79"})),
        replyTo<&IpNodeClient::getMplaneVirtualIpAddress>(bytes({ok, stationBytes, maskBytes})),
        replyTo<&IpNodeClient::getAdjEnbIpAddressList>(bytes({ok, "00 00 00 02", stationBytes, peerBytes})),
        replyTo<&IpNodeClient::getSgwIpAddressSeq>(bytes({ok, "00 00 00 01", pairBytes})),
        replyTo<&IpNodeClient::getQubomode>(bytes({ok, "FF FF FF FF"})),

        replyTo<&Routes::getIpRouteEntries>(bytes({ok, "00 00 00 02", referenceToA, referenceToBc})),
        replyTo<&Routes::getIpRouteEntriesCfg>(bytes({ok, "00 00 00 01", routeCfgBytes})),
        replyTo<&Routes::getIpRouteSequence>(bytes({ok, "00 00 00 02", routeBytes, routeBytes})),
        replyTo<&IpRouteEntryClient::getGateway>("FF FF FF FF"),
        replyTo<&IpRouteEntryClient::getNetworkType>("FF FF FF FE"),
    });

    // A record that no request carries.
    Recorder entry;
    entry.reply = "0A 00 00 01 FF FF FF 00 0A 00 00 FE FF FF FF FF";
    IpRouteEntryClient::Cfg cfg{};
    IpRouteEntryClient(&entry).getRouteCfg(cfg);
    EXPECT_EQ(cfg.destination, 0x0a000001U);
    EXPECT_EQ(cfg.netmask, 0xffffff00U);
    EXPECT_EQ(cfg.gateway, 0x0a0000feU);
    EXPECT_EQ(cfg.networkType, -1);
}

TEST(IpSide, failsCallsThatAreNotCarriedOut)
{
    expectOfRefusedCalls({
        replyTo<&IfNetClient::setMtu>(failed),
        replyTo<&IfNetClient::getUnitName>(bytes({failed, "00 00 00 00"})),
        replyTo<&IfNetClient::getDownEgress>(unbound),
        replyTo<&EthIfNetClient::createVlan>(bytes({failed, unbound})),
        replyTo<&EthIfNetClient::getVlanTags>(none),
        replyTo<&VlanIfNetFabricClient::retrieveNext>(bytes({unbound, "00 00 00 00"})),
        replyTo<&VlanMapClient::getVlanMap>(repeated(7, bytes({"00 00", unbound}))),
        replyTo<&DsvmEntryClient::init>(no),
        replyTo<&IpRouteEntryClient::getDestination>(none),
        replyTo<&IpRouteEntryClient::getNetworkType>(none),
        replyTo<&IpNodeClient::getnumberedLinks>(no),
    });
}

TEST(IpSide, leavesOutArgumentsAloneThatNoReplyFills)
{
    Address first = station;
    Address second = mask;
    unsigned long number = 5;
    std::string text = "as it was";
    auto const expectAsItWas = [&] {
        EXPECT_EQ(wireForm(first), stationBytes);
        EXPECT_EQ(wireForm(second), maskBytes);
        EXPECT_EQ(number, 5U);
        EXPECT_EQ(text, "as it was");
    };
    Refuser refuser;
    EXPECT_EQ(IpNodeClient(&refuser).getIpConfig("BTS", first, second, number, text), GetClient::FAILED);
    expectAsItWas();

    // A status and nothing after it.
    Recorder node;
    node.reply = "00 00 00 07 00 00 00 01";
    ResponseInfo<GetClient> const status = IpNodeClient(&node).getIpConfig("BTS", first, second, number, text);
    EXPECT_EQ(wireForm(status), node.reply);
    expectAsItWas();

    // What a failure sends all the same is taken.
    node.reply = bytes({failed, peerBytes});
    EXPECT_EQ(IpNodeClient(&node).getSgwIpAddress(first), GetClient::FAILED);
    EXPECT_EQ(wireForm(first), peerBytes);
}

} // namespace
