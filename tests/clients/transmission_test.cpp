// What the proxies of ports, lines, ATM, multilink and hardware send and make of replies, byte by byte.
#include "clients/ip/EthLinkClient.h"
#include "clients/ip/EthPortClient.h"
#include "clients/ip/EthUnitClient.h"
#include "clients/services/HwmLedClient.h"
#include "clients/services/HwmModuleClient.h"
#include "clients/services/HwmSensorClient.h"
#include "clients/services/HwmUnitClient.h"
#include "clients/transmission/Aal5ProfileClient.h"
#include "clients/transmission/Aal5VirtualChannelTrailTpClient.h"
#include "clients/transmission/AtmIfNetClient.h"
#include "clients/transmission/AtmTrafficDescriptorClient.h"
#include "clients/transmission/AtmVcCrossConnectionClient.h"
#include "clients/transmission/Mlp3EndpointClient.h"
#include "clients/transmission/PdhUnitClient.h"
#include "clients/transmission/VirtualChannelConnectionTpClient.h"
#include "tests/support/Exchange.h"

namespace {

using namespace golden;
using Connection = VirtualChannelConnectionTpClient;
using Descriptor = AtmTrafficDescriptorClient;
using Link = EthLinkClient;
using Trail = Aal5VirtualChannelTrailTpClient;

PortBpData const port{1, 2, 255, -1, 5, 6, 7, 8, 4294967295};
std::string const portBytes = "01 02 FF FF FF FF FF 00 00 00 05 00 00 00 06 00 00 00 07 00 00 00 08 FF FF FF FF";
Link::TransmissionMode const mode{.speedAndDuplex = valueOf<Link::SpeedAndDuplexType>(1),
                                  .capacity = valueOf<Link::CapacityType>(1000),
                                  .duplex = valueOf<Link::DuplexType>(-2)};
std::string const modeBytes = "00 00 00 01 00 00 03 E8 FF FF FF FE";
Link::DriverInfo const driver{.physicalType = valueOf<Link::PhysicalType>(1),
                              .hardwareAddress = arrayOf<unsigned char>(0, 64, 67, 255, 254, 1),
                              .capacity = valueOf<Link::CapacityType>(1000),
                              .text = "xy",
                              .autoNegResult = valueOf<Link::autoNegResultType>(3)};
std::string const driverBytes = "00 00 00 01 00 40 43 FF FE 01 00 00 03 E8 00 00 00 02 78 79 00 00 00 03";
HwmLedClient::LedState const led{
    .colour1 = valueOf<HwmLedClient::LedColour>(1), .colour2 = valueOf<HwmLedClient::LedColour>(-2), .flag = true};
std::string const ledBytes = "00 00 00 01 FF FF FF FE 00 00 00 01";
std::string const lineBytes = "FF FF FF FE FF FF FF FF 00 00 00 03 00 00 00 04 00 00 00 05 00 00 00 06";
PdhUnitClient::PdhInfoSeq lines()
{
    PdhUnitClient::PdhInfo const line{4294967294, -1, 3, 4, 5, 6};
    return {.flag = true, .lines = sequenceOf({line, line})};
}

TEST(PhysicalObjects, send)
{
    expectRequests({
        {[](Recorder& to) { TransmissionUnitClient(&to).getUtopiaAddress(port); }, {0x291ad33c, 4, portBytes}},
        {[](Recorder& to) { PdhUnitClient(&to).reserveUtopiaAddress(port); }, {0x291ad33c, 5, portBytes}},
        {[](Recorder& to) { EthUnitClient(&to).getHwmUnit(); }, {0x291ad33c, 0, ""}},
        {[](Recorder& to) { EthPortClient(&to).getSsmValueTx(); }, {0xb63082a3, 2, ""}},
        {[](Recorder& to) { EthPortClient(&to).setSsmValueRx(255); }, {0xb63082a3, 5, "FF"}},
        {[](Recorder& to) { PdhUnitClient(&to).setPdhSettings({}); }, {0xd9533b78, 1, "00 00 00 00 00 00 00 00"}},
        {[](Recorder& to) { PdhUnitClient(&to).setPdhSettings(lines()); },
         {0xd9533b78, 1, bytes({yes, "00 00 00 02", lineBytes, lineBytes})}},
        {[](Recorder& to) { Link(&to).setAccFrameType(valueOf<Link::AccFrameType>(-1)); },
         {0x05741f28, 16, "FF FF FF FF"}},
        {[](Recorder& to) { Link(&to).setShapedBw(Link::SHAPED_BW_MAX_GE); }, {0x05741f28, 17, "3B 9A CA 00"}},
        {[](Recorder& to) { Link(&to).setTransmissionMode(mode); }, {0x05741f28, 18, modeBytes}},
        {[](Recorder& to) { Link(&to).setDriverInfo(driver); }, {0x05741f28, 19, driverBytes}},
        {[](Recorder& to) { Link(&to).attachVlanTags({}); }, {0x05741f28, 22, none}},
        {[](Recorder& to) { Link(&to).detachVlanTags(sequenceOf<unsigned short>({65535})); },
         {0x05741f28, 23, "00 00 00 01 FF FF"}},
        {[](Recorder& to) { Mlp3HdlcClient(&to).getUnit(); }, {0x7a82e634, 0, ""}},
        {[](Recorder& to) { Mlp3LinkClient(&to).getUnit(); }, {0xc1d50880, 0, ""}},
        {[](Recorder& to) { Mlp3EndpointClient(&to).hasLink(Mlp3LinkClient(TipprmiOID("bc"))); },
         {0x3634bf45, 2, referenceToBc}},
        {[](Recorder& to) { HwmUnitClient(&to).createModule(3, "xy"); },
         {0xc0c01694, 1, "00 00 00 03 00 00 00 02 78 79"}},
        {[](Recorder& to) { HwmModuleClient(&to).getSlotNumber(); }, {0x03603fd9, 0, ""}},
        {[](Recorder& to) { HwmLedClient(&to).updateLedState(led); }, {0xfba274a4, 1, ledBytes}},
        {[](Recorder& to) { HwmLedClient(&to).setLedName(""); }, {0xfba274a4, 2, none}},
        {[](Recorder& to) { HwmSensorClient(&to).updateTemperature(-40); }, {0xc55fb338, 2, "FF FF FF D8"}},
    });
}

template <class T>
concept Readable = requires(TipprmiStream& stream, T& value) { stream >> value; };
static_assert(Readable<PortBpData> && !Readable<Descriptor::InitValues> && !Readable<Trail::InitValues>);

TEST(AtmObjects, send)
{
    // The twenty values count from 1.
    Descriptor::InitValues const values{1,  2,  3,  4,  5,  6,  7,  8,  9,  10,   11,
                                        12, 13, 14, 15, 16, 17, 18, 19, 20, "us", "nma"};
    EXPECT_EQ(values.egressPeakCellRateClp0_1, 3U);
    EXPECT_EQ(values.ingressPeakCellRateClp0_1, 5U);
    EXPECT_EQ(values.ingressClrClp0, 14U);
    EXPECT_EQ(values.ingressUbrShare, 20U);
    std::string const valuesBytes =
        "00 00 00 01 00 00 00 02 00 00 00 03 00 00 00 04 00 00 00 05 00 00 00 06 00 00 00 07 00 00 00 08 00 00 00 09 "
        "00 00 00 0A 00 00 00 0B 00 00 00 0C 00 00 00 0D 00 00 00 0E 00 00 00 0F 00 00 00 10 00 00 00 11 00 00 00 12 "
        "00 00 00 13 00 00 00 14 00 00 00 02 75 73 00 00 00 03 6E 6D 61";
    Connection const a(TipprmiOID("a"));
    Trail::InitValues const init{-1, Aal5ProfileClient(TipprmiOID("bc")), a};
    Connection other;
    expectRequests({
        {[&](Recorder& to) { Descriptor(&to).isLike(values); }, {0x4911029d, 49, valuesBytes}},
        {[](Recorder& to) { Descriptor(&to).setIngressUbrShare(Descriptor::MAXIMUM_UBR_SHARE); },
         {0x4911029d, 45, "00 00 03 E8"}},
        {[](Recorder& to) { Descriptor(&to).enablePm(); }, {0xae4e8c49, 5, ""}},
        {[](Recorder& to) { Descriptor(&to).isReadonly(); }, {0x5df7b79b, 0, ""}},
        {[](Recorder& to) { Aal5ProfileClient(&to).setNmaLabel("xy"); }, {0xe6987bc9, 1, "00 00 00 02 78 79"}},
        {[](Recorder& to) { Connection(&to).internalSetSegmentEndPoint(false); }, {0x5b8d2e40, 7, no}},
        {[&](Recorder& to) { Connection(&to).getAssociatedTp(other); }, {0x32763195, 8, ""}},
        {[&](Recorder& to) { Trail(&to).init(init); },
         {0xa95f9234, 1, bytes({"FF FF FF FF", referenceToBc, referenceToA})}},
        {[&](Recorder& to) { Trail(&to).VirtualChannelTrailTpClient::init(a, 7); },
         {0x2b36eb70, 1, bytes({referenceToA, "00 00 00 07"})}},
        {[](Recorder& to) { Trail(&to).isInUse(); }, {0x2b36eb70, 4, ""}},
        {[](Recorder& to) { AtmVcCrossConnectionClient(&to).internalSetXcId(4294967295); },
         {0x5d43391f, 5, "FF FF FF FF"}},
        {[](Recorder& to) { AtmIfNetClient(&to).recordDeviceParams(65535, "xy", -32768); },
         {0x5210ed4c, 5, "FF FF 00 00 00 02 78 79 80 00"}},
        {[](Recorder& to) { AtmIfNetClient(&to).getDownEgress(); }, {0xb86aeff7, 19, ""}},
    });
}

TEST(TransmissionObjects, takeResultsAndOutArgumentsFromReplies)
{
    expectReplies({
        replyTo<&TransmissionUnitClient::getHwmUnit>(referenceToA),
        replyTo<&TransmissionUnitClient::getHwmType>("00 00 00 02 78 79"),
        replyTo<&TransmissionUnitClient::getSlotNumber>("FF"),
        replyTo<&TransmissionUnitClient::getUtopiaAddress>(portBytes),
        replyTo<&TransmissionUnitClient::cancelUtopiaAddressReservation>(""),
        replyTo<&TransmissionIfClient::getPathType>(referenceToBc),
        replyTo<&TransmissionIfClient::getReservationSeq>(bytes({"00 00 00 02", referenceToA, referenceToBc})),
        replyTo<&PdhUnitClient::discoverPdhSettings>(bytes({yes, "00 00 00 02", lineBytes, lineBytes})),
        replyTo<&Link::getVlanTags>("00 00 00 01 FF FF"),
        replyTo<&Link::getPacketSize>("FF FF FF FF"),
        replyTo<&Link::getEthernetLinkType>("80 00 00 00"),
        replyTo<&Link::getDefaultTransmissionMode>(modeBytes),
        replyTo<&Link::getDriverInfo>(driverBytes),
        replyTo<&Descriptor::getServiceCat>("FF FF FF FF"),
        replyTo<&Connection::getVpiVci>(bytes({ok, "00 00 00 00 00 00 00 20"})),
        replyTo<&Connection::getChannelTrail>(bytes({ok, referenceToA})),
        replyTo<&Connection::getFaultPropagation>(yes),
        replyTo<&Trail::isInUse>("00 00 00 03 00 00 00 01"),
        replyTo<&Trail::getVif>(bytes({ok, "FF FF FF FF"})),
        replyTo<&AtmIfNetClient::getLlcSnap>(bytes({ok, yes})),
        replyTo<&Mlp3LinkDescriptorClient::getMruSize>("80 00"),
        replyTo<&Mlp3EndpointClient::getSupportingLinks>(none),
        replyTo<&HwmItemClient::getActiveSwVersion>(bytes({ok, "00 00 00 02 78 79"})),
        replyTo<&HwmItemClient::getRegistrationResult>(bytes({ok, "FF FF FF FF"})),
        replyTo<&HwmUnitClient::getLed>(bytes({ok, referenceToA})),
        replyTo<&HwmLedClient::getLedState>(bytes({ok, ledBytes})),
        replyTo<&HwmSensorClient::getTemperature>(bytes({ok, "FF FF FF D8"})),
    });
    expectOfRefusedCalls({
        replyTo<&TransmissionUnitClient::getSlotNumber>("00"),
        replyTo<&TransmissionUnitClient::getUtopiaAddress>(repeated(27, "00")),
        replyTo<&TransmissionUnitClient::getHwmType>(none),
        replyTo<&TransmissionIfClient::getReservationSeq>(none),
        replyTo<&PdhUnitClient::discoverPdhSettings>(bytes({no, none})),
        replyTo<&Link::getTransmissionMode>(repeated(12, "00")),
        replyTo<&Link::getDuplexMode>("00 00 00 00"),
        replyTo<&Link::getDriverInfo>(repeated(4 + 6 + 4 + 4 + 4, "00")),
        replyTo<&Mlp3LinkDescriptorClient::getMruSize>("00 00"),
        replyTo<&Connection::getCrossConnection>(bytes({failed, unbound})),
        replyTo<&Trail::isInUse>(failed),
        replyTo<&HwmItemClient::getSlotNumber>("00 00 00 00"),
    });

    Recorder connection;
    connection.reply = bytes({ok, "00 00 00 00 00 00 00 20"});
    long vpi = -1;
    long vci = -1;
    EXPECT_EQ(Connection(&connection).getVpiVci(vpi, vci), RunClient::OK);
    EXPECT_EQ(vpi, 0);
    EXPECT_EQ(vci, 32);
}

} // namespace
