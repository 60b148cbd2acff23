// What the site configuration tells: from its files, from an IP node in this process, and from the platform.
#include "adapter/ZYN_OSServices.h"
#include "broker/Log.h"
#include "broker/UnitValues.h"
#include "clients/ip/IpNodeClient.h"
#include "rmi/Servant.h"
#include "tests/support/ConfigFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <optional>
#include <string_view>

#include <dlfcn.h>
#include <unistd.h>

using namespace std::string_literals;
using Services = ZYN_OSServices;

extern "C" std::FILE* fopen(char const* path, char const* mode)
{
    static auto const libcs = reinterpret_cast<decltype(&fopen)>(dlsym(RTLD_NEXT, "fopen"));
    return libcs(support::ConfigFiles::redirected(path).c_str(), mode);
}

namespace {

TipprmiArray<short, 4> octets(short a, short b, short c, short d)
{
    TipprmiArray<short, 4> address;
    address[0] = a;
    address[1] = b;
    address[2] = c;
    address[3] = d;
    return address;
}

// An IP node in this process, and its transport Ethernet interface.
struct IpNode {
    IpNode()
    {
        node.on<&IpNodeClient::getIpConfig>([this](std::string const& name, TipprmiArray<short, 4>& address,
                                                   TipprmiArray<short, 4>& address2, unsigned long& number,
                                                   std::string& text) {
                asked.push_back(name);
                address = publicAddress;
                address2 = octets(9, 9, 9, 9);
                number = 4711;
                text = "text";
                return configState;
            })
            .on<&IpNodeClient::getTransportIfNet>([this](EthIfNetClient& ifNet) {
                if (hasInterface) {
                    ifNet = EthIfNetClient(&ethernet);
                }
                return interfaceState;
            });
        ethernet.on<&IfNetClient::getIpAddrSequence>([this](TipprmiSequence<IfNetClient::IpAddrInfo>& addresses) {
            addresses.setLength(0);
            for (TipprmiArray<short, 4> const& address : transportAddresses) {
                addresses.push_back({address, octets(9, 9, 9, 9), {}, {}});
            }
            return addressState;
        });
    }

    TipprmiArray<short, 4> publicAddress = octets(10, 1, 2, 3);
    GetClient::State configState = GetClient::OK;
    std::vector<std::string> asked;
    bool hasInterface = true;
    GetClient::State interfaceState = GetClient::OK;
    std::vector<TipprmiArray<short, 4>> transportAddresses{octets(10, 4, 5, 6), octets(1, 1, 1, 1)};
    GetClient::State addressState = GetClient::OK;
    Servant ethernet{TipprmiOID("TransportEthernet")};
    Servant node{TipprmiOID(IpNodeClient::IPNODE_OID, NamespaceId(1))};
};

class OSServices : public testing::Test {
protected:
    OSServices() { unit_.reset(); }
    ~OSServices() override { unit_.reset(); }

    trs::UnitValues& unit_ = trs::UnitValues::instance();
    support::ConfigFiles const files_;
};

TEST_F(OSServices, readsThePortFromTheFirstLineOfItsFile)
{
    EXPECT_EQ(Services::getBTSOMPort(), 12000);
    std::pair<std::string, int> const cases[] = {{"", 0},
                                                 {"8080abc", 8080},
                                                 {" 443\n", 443},
                                                 {"\t+7\r\n", 7},
                                                 {"-5", -5},
                                                 {"\n8080", 0},
                                                 {"80 80\n90", 80},
                                                 {"70000", 70000},
                                                 {"8\0008"s, 8},
                                                 {std::string(509, ' ') + "1234", 12},
                                                 {std::string(511, ' ') + "1234", 0},
                                                 {std::string(1'000'000, '0') + "9", 0}};
    for (auto const& [content, port] : cases) {
        files_.set("btsomPort.conf", content);
        EXPECT_EQ(Services::getBTSOMPort(), port) << content.substr(0, 40);
    }
}

TEST_F(OSServices, takesTheFirstLineOfTheAddressFileAsItIs)
{
    std::pair<std::string, std::string> const cases[] = {{"", ""},
                                                         {"\n10.0.0.1", ""},
                                                         {"10.0.0.1\r\nx", "10.0.0.1\r"},
                                                         {" not an address ", " not an address "},
                                                         {"a\0b\nc"s, "a\0b"s},
                                                         {std::string(510, 'x') + "\ny", std::string(510, 'x')},
                                                         {std::string(511, 'x') + "\ny", std::string(511, 'x')},
                                                         {std::string(2000, 'x'), std::string(511, 'x')}};
    for (auto const& [content, expected] : cases) {
        files_.set("btsomIpAddr.conf", content);
        std::string address = "before";
        EXPECT_TRUE(Services::getBTSOMIpAddress(address));
        EXPECT_EQ(address, expected);
    }
}

TEST_F(OSServices, knowsTheProductTypes)
{
    for (int const type : {-1, 0, 1, 2, 3}) {
        unit_.setProductType(type);
        std::string address;
        EXPECT_TRUE(Services::getBTSOMIpAddress(address));
        EXPECT_EQ(address, type == 2 ? "192.168.255.120" : "192.168.255.16");
        EXPECT_EQ(Services::isWCDMA(), type == 1);
        EXPECT_EQ(Services::isLdapSupported(), type == 1);
    }
}

TEST_F(OSServices, writesTheLocalManagementAddress)
{
    std::string address = "before";
    EXPECT_FALSE(Services::getLmpIpAddress(address));
    EXPECT_EQ(address, "0.0.0.0");
    unit_.setLocalManagementAddress({std::nullopt, 0, std::nullopt, 1});
    EXPECT_TRUE(Services::getLmpIpAddress(address));
    EXPECT_EQ(address, "0.0.0.1");
    unit_.setLocalManagementAddress({255, 128, 64, 192});
    EXPECT_TRUE(Services::getLmpIpAddress(address));
    EXPECT_EQ(address, "255.128.64.192");
}

TEST_F(OSServices, namesTheLogFileAfterTheBtsIdentifier)
{
    EXPECT_EQ(Services::getBsId(), -1);
    EXPECT_EQ(Services::getRuemLogfileName(), "ruem_wbts_-1.xml.gz");
    IpNode ipNode;
    EXPECT_EQ(Services::getBsId(), 4711);
    EXPECT_EQ(Services::getRuemLogfileName(), "ruem_wbts_4711.xml.gz");
    EXPECT_THAT(ipNode.asked, testing::Each("BTS"));
    ipNode.configState = GetClient::FAILED;
    EXPECT_EQ(Services::getBsId(), -1);
}

TEST_F(OSServices, fallsBackToTheLocalManagementAddressForThePublicOne)
{
    TipprmiArray<short, 4> const good = octets(10, 1, 2, 3);
    struct {
        char const* claim;
        std::optional<TipprmiArray<short, 4>> answer; // none: the query fails
        std::string before;
        bool hasLocal;
        bool result;
        std::string after;
    } const cases[] = {{"an address", good, "", true, true, "10.1.2.3"},
                       {"low 8 bits", octets(300, -1, 256, 7), "", true, true, "44.255.0.7"},
                       {"no address", octets(0, 0, 0, 0), "x", true, true, "10.9.8.7"},
                       {"the other no address", octets(255, 255, 255, 254), "x", true, true, "10.9.8.7"},
                       {"no address at all", octets(0, 0, 0, 0), "x", false, false, "0.0.0.0"},
                       {"failed", {}, "", true, false, "10.9.8.7"},
                       {"failed, neither", {}, "", false, false, "0.0.0.0"},
                       {"failed, known before", {}, "1.2.3.4", true, false, "1.2.3.4"},
                       {"failed, known as none", {}, "255.255.255.254", true, false, "10.9.8.7"}};
    for (auto const& [claim, answer, before, hasLocal, result, after] : cases) {
        unit_.setLocalManagementAddress(hasLocal ? trs::UnitValues::Address{10, 9, 8, 7} : trs::UnitValues::Address{});
        IpNode ipNode;
        ipNode.configState = answer ? GetClient::OK : GetClient::FAILED;
        ipNode.publicAddress = answer.value_or(good);
        std::string address = before;
        EXPECT_EQ(Services::getPublicIp(address), result) << claim;
        EXPECT_EQ(address, after) << claim;
        EXPECT_THAT(ipNode.asked, testing::ElementsAre("btsIpPrimary"));
    }
}

TEST_F(OSServices, keepsAKnownPublicAddressWhereTheIpNodeIsAway)
{
    std::string address = "1.2.3.4";
    EXPECT_TRUE(Services::getPublicIp(address));
    EXPECT_EQ(address, "1.2.3.4");
    address.clear();
    EXPECT_FALSE(Services::getPublicIp(address));
    EXPECT_EQ(address, "0.0.0.0");
    unit_.setLocalManagementAddress({10, 9, 8, 7});
    EXPECT_TRUE(Services::getPublicIp(address));
    EXPECT_EQ(address, "10.9.8.7");
}

TEST_F(OSServices, findsTheTransportAddressOrLeavesTheTextAlone)
{
    struct {
        char const* claim;
        void (*arrange)(IpNode&);
        std::string after; // empty: failure
    } const cases[] = {
        {"the first entry", [](IpNode&) {}, "10.4.5.6"},
        {"low 8 bits", [](IpNode& node) { node.transportAddresses = {octets(300, 256, 0, -1)}; }, "44.0.0.255"},
        {"not 0", [](IpNode& node) { node.transportAddresses = {octets(256, 1, 1, 1)}; }, "0.1.1.1"},
        {"begins with 0", [](IpNode& node) { node.transportAddresses[0] = octets(0, 1, 2, 3); }, ""},
        {"no entry", [](IpNode& node) { node.transportAddresses.clear(); }, ""},
        {"addresses refused", [](IpNode& node) { node.addressState = GetClient::FAILED; }, ""},
        {"interface refused", [](IpNode& node) { node.interfaceState = GetClient::FAILED; }, ""},
        {"no interface", [](IpNode& node) { node.hasInterface = false; }, ""}};
    auto const expect = [](char const* claim, std::string const& after) {
        trs::LogCapture const capture;
        std::string address = "before";
        EXPECT_EQ(Services::getTransportEthIp(address), !after.empty()) << claim;
        EXPECT_EQ(address, after.empty() ? "before" : after) << claim;
        ASSERT_EQ(capture.entries().size(), 1U) << claim;
        EXPECT_EQ(capture.entries()[0].severity, 6);
        EXPECT_EQ(capture.entries()[0].text, after.empty() ? "ZYN_OSServices: Failed to get TRS ETH ip"
                                                           : "ZYN_OSServices: obtained TRS ETH ip= " + after + " ");
    };
    for (auto const& [claim, arrange, after] : cases) {
        IpNode ipNode;
        arrange(ipNode);
        expect(claim, after);
    }
    expect("no IP node", "");
}

TEST_F(OSServices, composesPlacesOfTheConstants)
{
    EXPECT_EQ(Services::getCmpCertificateDataStore(), "/usr/local/etc/config/cmpdb");
    EXPECT_EQ(Services::getCmpPassiveCertificateDataStore(), "/tmp/passCfg/cmpdb");
    EXPECT_EQ(Services::getApplnRootCertificateDataStore(), "/usr/local/etc/config/certs");
    EXPECT_EQ(Services::WMX_ROOT_CERTIFICATE_STORE, "");
    EXPECT_EQ(Services::getBtsSiteMgrDefaultCertfFileName(), "/usr/local/etc/config/certs/bts_dov_default_cert.pem");
}

} // namespace
