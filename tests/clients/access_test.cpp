// What the proxies of the access services send and make of replies, byte by byte.
#include "clients/ip/DhcpAccessClient.h"
#include "clients/ip/IpSecClient.h"
#include "clients/ip/NtpAccessClient.h"
#include "clients/ip/RmAccessClient.h"
#include "tests/support/Exchange.h"

namespace {

using namespace golden;
using Dhcp = DhcpAccessClient;
using Ntp = NtpAccessClient;
using Rm = RmAccessClient;

auto const station = arrayOf<short>(10, 0, 0, 1);
auto const peer = arrayOf<short>(172, 16, 0, 2);
std::string const stationBytes = "00 0A 00 00 00 00 00 01";
std::string const peerBytes = "00 AC 00 10 00 00 00 02";

Rm::Source source()
{
    return {.type = valueOf<Rm::SourceType>(1),
            .address = {.type = valueOf<Rm::IpAddrType>(2),
                        .flag = valueOf<Rm::IpAddrFlag>(-3),
                        .address1 = station,
                        .address2 = peer},
            .port = {.type = valueOf<Rm::PortType>(4),
                     .range = {.first = 80, .second = 4294967295},
                     .ports = sequenceOf<unsigned long>({443, 8080})},
            .interface = {.type = valueOf<Rm::InterfaceType>(5),
                          .labels = sequenceOf<Rm::InterfaceLabel>({{"e", -1}, {"", 6}})},
            .text = "t"};
}
std::string const sourceBytes =
    bytes({"00 00 00 01 00 00 00 02 FF FF FF FD", stationBytes, peerBytes, "00 00 00 04 00 00 00 50 FF FF FF FF",
           "00 00 00 02 00 00 01 BB 00 00 1F 90", "00 00 00 05", "00 00 00 02 00 00 00 01 65 FF FF FF FF",
           "00 00 00 00 00 00 00 06", "00 00 00 01 74"});
// An endpoint that does not apply is written like any other.
std::string const emptySourceBytes = repeated(4 + 24 + 16 + 8 + 4, "00");

Rm::Exception exception()
{
    Rm::Exception value{.name = "ex",
                        .state = valueOf<Rm::ExceptionState>(1),
                        .type = valueOf<Rm::ExceptionType>(2),
                        .protocol = valueOf<Rm::ExceptionProto>(17),
                        .direction = valueOf<Rm::ExceptionDirect>(-1),
                        .endpoints = {}};
    value.endpoints[0] = source();
    value.endpoints[1] = Rm::Source{};
    return value;
}
std::string const exceptionBytes =
    bytes({"00 00 00 02 65 78 00 00 00 01 00 00 00 02 00 00 00 11 FF FF FF FF", sourceBytes, emptySourceBytes});

Ntp::NtpServer const server{
    .address = station, .value1 = 123, .status = valueOf<Ntp::NtpServerStatus>(2), .value2 = -1, .value3 = 7};
std::string const serverBytes = bytes({stationBytes, "00 7B 00 00 00 02 FF FF 00 07"});
Time const timeZone{-1, 2, 3, 4, 5, 6, 32767};
std::string const timeZoneBytes = "FF FF 00 02 00 03 00 04 00 05 00 06 7F FF";

Dhcp::DhcpConfigurationInfo const entry{
    .identifier = valueOf<Dhcp::DhcpConfigurationInfoIdentifier>(2),
    .leaseTime = {60, 3600, 4294967295},
    .clientIdentifier = {.identifier = "cl", .address = station},
    .hardwareIdentifier = {.hardwareAddress = arrayOf<short>(0, 64, 67, 255, 254, 1), .address = peer},
    .rangeIdentifier = {.first = station, .last = peer}};
std::string const entryBytes = bytes({"00 00 00 02 00 00 00 3C 00 00 0E 10 FF FF FF FF 00 00 00 02 63 6C", stationBytes,
                                      "00 00 00 40 00 43 00 FF 00 FE 00 01", peerBytes, stationBytes, peerBytes});

TEST(AccessServices, send)
{
    Rm::Source found;
    Rm::Ruleset ruleset{"rs", valueOf<Rm::RulesetState>(3), {}};
    expectRequests({
        {[&](Recorder& to) { Rm(&to).getSource(Rm::DOMAIN_LMP, found); }, {0x28478936, 0, "00 00 00 03 4C 4D 50"}},
        {[](Recorder& to) { Rm(&to).createException("r", exception()); },
         {0x28478936, 1, bytes({"00 00 00 01 72", exceptionBytes})}},
        {[](Recorder& to) { Rm(&to).deleteException("r", "ex"); }, {0x28478936, 2, "00 00 00 01 72 00 00 00 02 65 78"}},
        {[&](Recorder& to) { Rm(&to).setRuleset(ruleset); },
         {0x28478936, 3, "00 00 00 02 72 73 00 00 00 03 00 00 00 00"}},
        {[&](Recorder& to) {
             ruleset.exceptions = sequenceOf({exception(), exception()});
             Rm(&to).setRuleset(ruleset);
         },
         {0x28478936, 3, bytes({"00 00 00 02 72 73 00 00 00 03 00 00 00 02", exceptionBytes, exceptionBytes})}},
        {[](Recorder& to) { Rm(&to).switchRuleset("r", valueOf<Rm::RulesetState>(-1)); },
         {0x28478936, 7, "00 00 00 01 72 FF FF FF FF"}},
        {[](Recorder& to) { Rm(&to).switchException("r", "", valueOf<Rm::ExceptionState>(4)); },
         {0x28478936, 8, "00 00 00 01 72 00 00 00 00 00 00 00 04"}},
        {[](Recorder& to) { Rm(&to).changeTrigger(); }, {0x28478936, 11, ""}},

        {[](Recorder& to) { Ntp(&to).setTimeZone(timeZone); }, {0x842c0cbb, 1, timeZoneBytes}},
        {[](Recorder& to) {
             Ntp(&to).setNtpDaemonStatus(
                 sequenceOf({valueOf<Ntp::NtpServerStatus>(0), valueOf<Ntp::NtpServerStatus>(-1)}));
         },
         {0x842c0cbb, 3, "00 00 00 02 00 00 00 00 FF FF FF FF"}},
        {[](Recorder& to) { Ntp(&to).createNtpServer(station, -2); }, {0x842c0cbb, 6, bytes({stationBytes, "FF FE"})}},
        {[](Recorder& to) { Ntp(&to).setNtpDaemon(sequenceOf({server})); },
         {0x842c0cbb, 9, bytes({"00 00 00 01", serverBytes})}},

        {[](Recorder& to) { Dhcp(&to).createDhcpConfigurationEntry(entry); }, {0x916b14a2, 0, entryBytes}},
        {[](Recorder& to) { Dhcp(&to).deleteDhcpConfigurationEntry(station); }, {0x916b14a2, 1, stationBytes}},
        {[](Recorder& to) { Dhcp(&to).NotifyConfigChangeAndInit(); }, {0x916b14a2, 5, ""}},
        {[](Recorder& to) { IpSecClient(&to).setIpSecEnabled(true); }, {0x5a355250, 2, yes}},
    });
}

TEST(AccessServices, takeOutArgumentsFromReplies)
{
    expectReplies({
        replyTo<&Rm::getSource>(bytes({ok, sourceBytes})),
        replyTo<&Rm::getRuleset>(bytes({ok, "00 00 00 01 72 00 00 00 03 00 00 00 01", exceptionBytes})),
        replyTo<&Rm::getRestrictedMode>(bytes({ok, "FF FF FF FF"})),
        replyTo<&Rm::getApplicableExceptions>(bytes({ok, "00 00 00 02", exceptionBytes, exceptionBytes})),
        replyTo<&Rm::changeTrigger>(""),
        replyTo<&Ntp::getTimeZone>(bytes({ok, timeZoneBytes})),
        replyTo<&Ntp::getNtpServerSequence>(bytes({ok, "00 00 00 02", serverBytes, serverBytes})),
        replyTo<&Dhcp::getDhcpConfiguration>(bytes({ok, "00 00 00 02", entryBytes, entryBytes})),
        replyTo<&Dhcp::GetPublicIpMask>(stationBytes),
        replyTo<&IpSecClient::getIpSlkId>(bytes({ok, "00 00 00 01 73"})),
    });
    expectOfRefusedCalls({
        replyTo<&Rm::getApplicableExceptions>(bytes({failed, none})),
        replyTo<&Ntp::getNtpDaemon>(bytes({failed, none})),
        replyTo<&Dhcp::GetPublicIpAddress>(repeated(8, "00")),
    });
}

// A reply that ends within the second exception: the first is whole, and so is what came before the end.
TEST(AccessServices, keepTheRulesThatAReplyCutShortHolds)
{
    Recorder service;
    service.reply = bytes({ok, "00 00 00 02", exceptionBytes, "00 00 00 02 65 78 00 00 00 01 00 00"});
    TipprmiSequence<Rm::Exception> exceptions;
    EXPECT_EQ(Rm(&service).getApplicableExceptions(exceptions), GetClient::OK);
    ASSERT_EQ(exceptions.getLength(), 2U);
    EXPECT_EQ(wireForm(exceptions[0]), exceptionBytes);
    EXPECT_EQ(exceptions[1].name, "ex");
    EXPECT_EQ(exceptions[1].state, 1);
    EXPECT_EQ(exceptions[1].endpoints[0].port.ports.getLength(), 0U);
}

} // namespace
