// Every proxy class of clients/ and rmi/ against the catalogue.
#include "broker/framework/QelOperations.h"
#include "clients/ip/BfdIpIubClient.h"
#include "clients/ip/DhcpAccessClient.h"
#include "clients/ip/DiffServToVlanMapClient.h"
#include "clients/ip/DsvmEntryClient.h"
#include "clients/ip/EthIfNetClient.h"
#include "clients/ip/EthLinkClient.h"
#include "clients/ip/EthPortClient.h"
#include "clients/ip/EthUnitClient.h"
#include "clients/ip/IfNetBfdIpIubClient.h"
#include "clients/ip/IfNetClient.h"
#include "clients/ip/Ip3IfNetClient.h"
#include "clients/ip/IpNodeClient.h"
#include "clients/ip/IpRouteEntryClient.h"
#include "clients/ip/IpRoutingTableClient.h"
#include "clients/ip/IpSecClient.h"
#include "clients/ip/NtpAccessClient.h"
#include "clients/ip/RmAccessClient.h"
#include "clients/ip/TransportModeParClient.h"
#include "clients/ip/VlanIfNetClient.h"
#include "clients/ip/VlanIfNetFabricClient.h"
#include "clients/ip/VlanMapClient.h"
#include "clients/services/AdminStatePolicySkeleton.h"
#include "clients/services/AdminStateSkeleton.h"
#include "clients/services/ConditionSkeleton.h"
#include "clients/services/FaultServiceSkeleton.h"
#include "clients/services/HwmItemClient.h"
#include "clients/services/HwmLedClient.h"
#include "clients/services/HwmModuleClient.h"
#include "clients/services/HwmSensorClient.h"
#include "clients/services/HwmUnitClient.h"
#include "clients/services/LocationIdSkeleton.h"
#include "clients/services/PerformanceServiceSkeleton.h"
#include "clients/transmission/Aal5PmClient.h"
#include "clients/transmission/Aal5ProfileClient.h"
#include "clients/transmission/Aal5VirtualChannelTrailTpClient.h"
#include "clients/transmission/AtmCrossConnectionClient.h"
#include "clients/transmission/AtmIfNetClient.h"
#include "clients/transmission/AtmPersistentAppObjectClient.h"
#include "clients/transmission/AtmPersistentObjectClient.h"
#include "clients/transmission/AtmTrafficDescriptorClient.h"
#include "clients/transmission/AtmVcCrossConnectionClient.h"
#include "clients/transmission/Mlp3EndpointClient.h"
#include "clients/transmission/Mlp3HdlcClient.h"
#include "clients/transmission/Mlp3LinkClient.h"
#include "clients/transmission/Mlp3LinkDescriptorClient.h"
#include "clients/transmission/PdhUnitClient.h"
#include "clients/transmission/PhyObjectClient.h"
#include "clients/transmission/TransmissionIfClient.h"
#include "clients/transmission/TransmissionPortClient.h"
#include "clients/transmission/TransmissionUnitClient.h"
#include "clients/transmission/VirtualChannelConnectionTpClient.h"
#include "clients/transmission/VirtualChannelTrailTpClient.h"
#include "clients/transmission/VirtualConnectionTpClient.h"
#include "rmi/ApplicationObjectSenaPolicySkeleton.h"
#include "rmi/ApplicationObjectSkeleton.h"
#include "tests/support/GoldenRecord.h"

#include <set>

namespace {

// The only place here that grows with the code.
using Classes =
    std::tuple<Aal5PmClient, Aal5ProfileClient, Aal5VirtualChannelTrailTpClient, AdminStateClient,
               AdminStatePolicyClient, ApplicationObjectClient, ApplicationObjectSenaPolicyClient,
               AtmCrossConnectionClient, AtmIfNetClient, AtmPersistentAppObjectClient, AtmPersistentObjectClient,
               AtmTrafficDescriptorClient, AtmVcCrossConnectionClient, BfdIpIubClient, ConditionClient,
               DhcpAccessClient, DiffServToVlanMapClient, DsvmEntryClient, EthIfNetClient, EthLinkClient, EthPortClient,
               EthUnitClient, FaultServiceClient, HwmItemClient, HwmLedClient, HwmModuleClient, HwmSensorClient,
               HwmUnitClient, IfNetBfdIpIubClient, IfNetClient, Ip3IfNetClient, IpNodeClient, IpRouteEntryClient,
               IpRoutingTableClient, IpSecClient, LocationIdClient, Mlp3EndpointClient, Mlp3HdlcClient, Mlp3LinkClient,
               Mlp3LinkDescriptorClient, NtpAccessClient, PdhUnitClient, PerformanceServiceClient, PhyObjectClient,
               RmAccessClient, TransmissionIfClient, TransmissionPortClient, TransmissionUnitClient,
               TransportModeParClient, VirtualChannelConnectionTpClient, VirtualChannelTrailTpClient,
               VirtualConnectionTpClient, VlanIfNetClient, VlanIfNetFabricClient, VlanMapClient>;

struct ClassCheck {
    std::string_view name;
    void (*expectListed)();
    void (*expectEveryBodyCallsItsOperation)();
    friend void PrintTo(ClassCheck const& check, std::ostream* out) { *out << check.name; }
};

template <class... Proxy>
std::vector<ClassCheck> checksOf(std::type_identity<std::tuple<Proxy...>>)
{
    return {
        {reflect::className<Proxy>, &golden::expectListed<Proxy>, &golden::expectEveryBodyCallsItsOperation<Proxy>}...};
}
std::vector<ClassCheck> const checks = checksOf(std::type_identity<Classes>{});

class Catalogue : public testing::TestWithParam<ClassCheck> {};

TEST_P(Catalogue, describesTheClass) { GetParam().expectListed(); }
TEST_P(Catalogue, isWhatTheBodiesCall) { GetParam().expectEveryBodyCallsItsOperation(); }

INSTANTIATE_TEST_SUITE_P(All, Catalogue, testing::ValuesIn(checks),
                         [](auto const& test) { return std::string(test.param.name); });

TEST(CatalogueAsAWhole, isInTheCode)
{
    std::set<std::string> missing;
    for (auto const& [name, lines] : golden::lines()) {
        missing.insert(name);
    }
    for (ClassCheck const& check : checks) {
        EXPECT_EQ(missing.erase(std::string(check.name)), 1U) << check.name;
    }
    EXPECT_THAT(missing, testing::ElementsAre("NmiRmiAdapterClient")) << "which is checked with the adapter";
}

} // namespace
