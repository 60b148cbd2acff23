// The simulated unit's IP node and what it hands out, through the proxies and from another process.
#include "tests/support/Programs.h"

#include "broker/CallFailure.h"
#include "clients/ip/IpNodeClient.h"
#include "clients/services/HwmUnitClient.h"

namespace {

using Address = TipprmiArray<short, 4>;

Address address(short first, short second, short third, short fourth)
{
    Address value;
    value[0] = first;
    value[1] = second;
    value[2] = third;
    value[3] = fourth;
    return value;
}

// A node of the test's own process that knows nothing: the simulated one is found by its name alone.
class IpNode : public ProgramTest {
protected:
    IpNode() { peerAt(endpoint); }

    EthIfNetClient transport() const
    {
        EthIfNetClient ifNet;
        EXPECT_EQ(node.getTransportIfNet(ifNet), GetClient::OK) << trs::lastCallFailure().text();
        return ifNet;
    }

    Unit sim = unit();
    TreflectHandlerState const running;
    IpNodeClient const node{TipprmiOID(IpNodeClient::IPNODE_OID, NamespaceId(1))};
};

TEST_F(IpNode, LeadsToTheAddressOfItsTransportInterface)
{
    ASSERT_TRUE(node.isConnected());
    EthIfNetClient const ifNet = transport();
    ASSERT_TRUE(ifNet.isConnected());
    TipprmiSequence<IfNetClient::IpAddrInfo> addresses;
    addresses.setLength(1);
    ASSERT_EQ(ifNet.getIpAddrSequence(addresses), GetClient::OK);
    ASSERT_EQ(addresses.getLength(), 1U);
    EXPECT_EQ(addresses[0].ipAddress, address(10, 1, 0, 7));

    EthIfNetClient lmp;
    EXPECT_EQ(node.getLMPIfNet(lmp), GetClient::OK);
    EXPECT_FALSE(lmp.isSameObject(ifNet));
    IpRoutingTableClient table;
    EXPECT_EQ(node.getDedicatedIpRoutingTable(table, 1), GetClient::FAILED);
    EXPECT_FALSE(table.isConnected());
}

TEST_F(IpNode, KeepsWhatItIsTold)
{
    long mtu = 0;
    EXPECT_EQ(transport().setMtu(1400), SetClient::OK);
    EXPECT_EQ(transport().getMtu(mtu), GetClient::OK);
    EXPECT_EQ(mtu, 1400);
    EXPECT_EQ(node.getMtu(mtu), GetClient::OK);
    EXPECT_EQ(mtu, 1500) << "the node's is another one";

    Address first;
    Address second;
    unsigned long number = 0;
    std::string text;
    EXPECT_EQ(node.getIpConfig(IpNodeClient::BTS_ID, first, second, number, text), GetClient::OK);
    EXPECT_EQ(number, 4711U);
    EXPECT_EQ(node.getIpConfig(IpNodeClient::RNC_ID, first, second, number, text), GetClient::FAILED);
    EXPECT_EQ(node.setIpConfig(IpNodeClient::RNC_ID, address(10, 9, 8, 7), address(1, 2, 3, 4), 5, "rnc"),
              SetClient::OK);
    EXPECT_EQ(node.getIpConfig(IpNodeClient::RNC_ID, first, second, number, text), GetClient::OK);
    EXPECT_EQ(first, address(10, 9, 8, 7));
    EXPECT_EQ(second, address(1, 2, 3, 4));
    EXPECT_EQ(number, 5U);
    EXPECT_EQ(text, "rnc");
    EXPECT_EQ(node.resetIpConfig(), SetClient::OK);
    EXPECT_EQ(node.getIpConfig(IpNodeClient::RNC_ID, first, second, number, text), GetClient::FAILED);
}

TEST_F(IpNode, CreatesAndDeletesVlans)
{
    EthIfNetClient const ifNet = transport();
    VlanIfNetFabricClient const fabric = ifNet.getVlanIfNetFabric();
    EXPECT_EQ(fabric.getSize(), 2U);
    VlanIfNetClient::VlanIfNetCreateParams params{};
    params.vlanId = 300;
    params.sir = 700;
    params.shaperBurstSize = VlanIfNetClient::SBS_MIN;
    params.ipAddressInfo.ipAddress = address(10, 44, 0, 1);
    VlanIfNetClient created;
    ASSERT_EQ(ifNet.createVlan(params, created), RunClient::OK);
    VlanIfNetClient twin;
    EXPECT_EQ(ifNet.createVlan(params, twin), RunClient::FAILED) << "there is one of that identifier";

    unsigned long sir = 0;
    EXPECT_EQ(created.getSIR(sir), GetClient::OK);
    EXPECT_EQ(sir, 700U);
    EXPECT_EQ(fabric.getIndexes().getLength(), 3U);
    EXPECT_TRUE(fabric.retrieve("300").isSameObject(created));
    EXPECT_FALSE(fabric.retrieve("301").isConnected());

    EXPECT_EQ(ifNet.deleteVlan(300), RunClient::OK);
    EXPECT_EQ(ifNet.deleteVlan(300), RunClient::FAILED);
    EXPECT_FALSE(created.isConnected());
    fabric.destroyByInterface(fabric.retrieve("100"));
    fabric.destroy("200");
    EXPECT_EQ(fabric.retrieveAll().getLength(), 0U);
}

TEST_F(IpNode, KeepsRoutes)
{
    IpRoutingTableClient table;
    ASSERT_EQ(node.getDedicatedIpRoutingTable(table, 0), GetClient::OK);
    IpRoutingTableClient::IpRouteEntryCfg const route{address(10, 3, 0, 0), address(255, 255, 0, 0),
                                                      address(10, 1, 0, 1)};
    EXPECT_EQ(table.createIpRoute(route), RunClient::OK);
    EXPECT_EQ(table.createIpRoute(route), RunClient::FAILED);
    TipprmiSequence<IpRoutingTableClient::IpRoute> routes;
    EXPECT_EQ(table.getIpRouteSequence(routes), GetClient::OK);
    ASSERT_EQ(routes.getLength(), 4U);
    EXPECT_EQ(routes[3].destination, route.destination);
    EXPECT_EQ(routes[3].netmask, route.netmask);
    EXPECT_EQ(table.deleteIpRoute(route), RunClient::OK);
    EXPECT_EQ(table.deleteIpRoute(route), RunClient::FAILED);
}

TEST_F(IpNode, LeadsToTheHardware)
{
    HwmUnitClient const hardware = transport().getLinks()[0].getPort().getUnit().getHwmUnit();
    HwmModuleClient module;
    ASSERT_EQ(hardware.getModule(1, module), GetClient::OK);
    EXPECT_EQ(module.getSlotNumber(), 1);
    EXPECT_EQ(hardware.createModule(1, "spare"), SetClient::FAILED);
    EXPECT_EQ(hardware.createModule(2, "spare"), SetClient::OK);
    EXPECT_EQ(hardware.deleteModule(1), SetClient::OK);
    EXPECT_FALSE(module.isConnected());

    HwmSensorClient sensor;
    long temperature = 0;
    ASSERT_EQ(hardware.getSensor(sensor), GetClient::OK);
    EXPECT_EQ(sensor.updateTemperature(-5), SetClient::OK);
    EXPECT_EQ(sensor.getTemperature(temperature), GetClient::OK);
    EXPECT_EQ(temperature, -5);
}

} // namespace
