#include "adapter/ZYN_OSServices.h"

#include "adapter/ZYN_AdapterConstants.h"
#include "adapter/ZYN_MessageNames.h"
#include "adapter/ZYN_StringUtils.h"
#include "clients/ip/EthIfNetClient.h"
#include "clients/ip/IpNodeClient.h"
#include "platform/NmaLogHelper.h"
#include "platform/UnitEnvironment.h"
#include "rmi/TreflectHandlerState.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <numeric>
#include <optional>

std::string const ZYN_OSServices::NE_NAME_KORVA_BTS = "WBTS";
std::string const ZYN_OSServices::WMX_TLS_CIPHER_SUITE = "AES128-SHA";
std::string const ZYN_OSServices::WMX_CERTIFICATE_STORE = "/usr/local/etc/config/certs";
std::string const ZYN_OSServices::WMX_PRIVATE_KEY_FILE_NAME = "privkey.pem";
std::string const ZYN_OSServices::WMX_CERTIFICATE_FILE_NAME = "cert.pem";
std::string const ZYN_OSServices::WMX_ROOT_CERTIFICATE_FILE_NAME_PREFIX = "root_cert_";
std::string const ZYN_OSServices::WMX_ROOT_CERTIFICATE_STORE;
std::string const ZYN_OSServices::WMX_CMP_SECURE_STORE_DIR = "cmpdb";
std::string const ZYN_OSServices::WMX_CMP_SECURE_STORE = "/usr/local/etc/config/" + WMX_CMP_SECURE_STORE_DIR;
std::string const ZYN_OSServices::WMX_CMP_BTS_KEY_FILE = "cmp_bts_key";
std::string const ZYN_OSServices::WMX_CMP_BTS_CERT_FILE = "cmp_bts_cert";
std::string const ZYN_OSServices::WMX_CMP_ROOT_CERT_FILE_PREFIX = "cmp_ca_cert";
std::string const ZYN_OSServices::WMX_CMP_PARAMETERS_DB = "cmp_params.xml";
std::string const ZYN_OSServices::WMX_CMP_SECURE_STORE_PASSIVE = "/tmp/passCfg/" + WMX_CMP_SECURE_STORE_DIR;

namespace {

using Address = TipprmiArray<short, 4>;

// The first line of a configuration file; nothing when it cannot be opened.
std::optional<std::string> firstLine(std::string const& path)
{
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Closer> const file(std::fopen(path.c_str(), "r"));
    if (file == nullptr) {
        return std::nullopt;
    }
    std::array<char, 511> line;
    std::size_t const length = std::fread(line.data(), 1, line.size(), file.get());
    return std::string(line.data(), std::find(line.data(), line.data() + length, '\n'));
}

std::string dottedQuad(Address const& address)
{
    auto const octet = [&address](unsigned long i) { return static_cast<unsigned int>(address[i]) & 0xffU; };
    std::array<char, 18> text;
    std::snprintf(text.data(), text.size(), "%u.%u.%u.%u", octet(0), octet(1), octet(2), octet(3));
    return text.data();
}

TipprmiOID ipNodeId() { return {IpNodeClient::IPNODE_OID, NamespaceId(1)}; }

// What the services use of an entry of the IP configuration.
struct IpConfig {
    Address address{};
    unsigned long number = 0;
};

// The entry of that name; nothing when the call fails.
std::optional<IpConfig> ipConfig(IpNodeClient const& node, std::string const& name)
{
    IpConfig entry;
    Address address2{};
    std::string text;
    if (node.getIpConfig(name, entry.address, address2, entry.number, text) != GetClient::OK) {
        return std::nullopt;
    }
    return entry;
}

// The address of the transport Ethernet interface; nothing when the IP node or the interface does not tell.
std::optional<std::string> transportEthAddress()
{
    IpNodeClient const node(ipNodeId());
    EthIfNetClient ethernet;
    if (!node.isConnected() || node.getTransportIfNet(ethernet) != GetClient::OK || !ethernet.isConnected()) {
        return std::nullopt;
    }
    TipprmiSequence<IfNetClient::IpAddrInfo, 0> addresses;
    addresses.setLength(1);
    if (ethernet.getIpAddrSequence(addresses) != GetClient::OK || addresses.getLength() == 0 ||
        addresses[0].ipAddress[0] == 0) {
        return std::nullopt;
    }
    return dottedQuad(addresses[0].ipAddress);
}

} // namespace

int ZYN_OSServices::getBTSOMPort()
{
    std::optional<std::string> const line = firstLine(xoh::BTSOM_PORT_FILE);
    return line ? std::atoi(line->c_str()) : 12000;
}

bool ZYN_OSServices::getBTSOMIpAddress(std::string& address)
{
    if (std::optional<std::string> const line = firstLine(xoh::BTSOM_IP_ADDRESS_FILE)) {
        address = *line;
    } else {
        address =
            NmaConfigurator::getProdType() == 2 ? xoh::DEFAULT_BTSOM_ADDRESS_PRODUCT_2 : xoh::DEFAULT_BTSOM_ADDRESS;
    }
    return true;
}

bool ZYN_OSServices::getLmpIpAddress(std::string& address)
{
    std::array<unsigned char, 4> octets{};
    envInfoIpAddr(octets.data());
    address.clear();
    for (unsigned char const octet : octets) {
        address += (address.empty() ? "" : ".") + ZYN_StringUtils::toString(int{octet}, std::dec);
    }
    return std::accumulate(octets.begin(), octets.end(), 0) != 0;
}

long ZYN_OSServices::getBsId()
{
    TreflectHandlerState const handlerState;
    IpNodeClient const node(ipNodeId());
    std::optional<IpConfig> const entry = node.isConnected() ? ipConfig(node, IpNodeClient::BTS_ID) : std::nullopt;
    return entry ? static_cast<long>(entry->number) : -1;
}

bool ZYN_OSServices::getPublicIp(std::string& address)
{
    TreflectHandlerState const handlerState;
    bool result = true;
    IpNodeClient const node(ipNodeId());
    if (node.isConnected()) {
        if (std::optional<IpConfig> const entry = ipConfig(node, IpNodeClient::BTS_PRIMARY_ID)) {
            address = dottedQuad(entry->address);
        } else {
            result = false;
        }
    }
    if (address.empty() || address == "0.0.0.0" || address == "255.255.255.254") {
        result = getLmpIpAddress(address) && result;
    }
    return result;
}

bool ZYN_OSServices::getTransportEthIp(std::string& address)
{
    TreflectHandlerState const handlerState;
    std::optional<std::string> const found = transportEthAddress();
    if (!found) {
        NmaLogHelper(6, __FILE__, __func__, __LINE__).message("ZYN_OSServices: Failed to get TRS ETH ip");
        return false;
    }
    address = *found;
    NmaLogHelper(6, __FILE__, __func__, __LINE__).message("ZYN_OSServices: obtained TRS ETH ip= %s ", address.c_str());
    return true;
}

std::string ZYN_OSServices::getRuemLogfileName()
{
    return "ruem_wbts_" + ZYN_StringUtils::toString(getBsId(), std::dec) + ".xml.gz";
}

std::string ZYN_OSServices::getRuemLogfilePath() { return "/tmp/ftp"; }

std::string ZYN_OSServices::getNEName() { return NE_NAME_KORVA_BTS; }
std::string ZYN_OSServices::getTlsCipherSuite() { return WMX_TLS_CIPHER_SUITE; }

std::string ZYN_OSServices::getCmpCertificateDataStore() { return WMX_CMP_SECURE_STORE; }
std::string ZYN_OSServices::getCmpPassiveCertificateDataStore() { return WMX_CMP_SECURE_STORE_PASSIVE; }
std::string ZYN_OSServices::getCmpBtsKeyFileName() { return WMX_CMP_BTS_KEY_FILE; }
std::string ZYN_OSServices::getCmpBtsCertificateFileName() { return WMX_CMP_BTS_CERT_FILE; }
std::string ZYN_OSServices::getCmpRootCertificateFileNamePrefix() { return WMX_CMP_ROOT_CERT_FILE_PREFIX; }
std::string ZYN_OSServices::getCmpParametersDbName() { return WMX_CMP_PARAMETERS_DB; }

std::string ZYN_OSServices::getApplnCertificateDataStore() { return WMX_CERTIFICATE_STORE; }
std::string ZYN_OSServices::getApplnRootCertificateDataStore() { return WMX_CERTIFICATE_STORE; }
std::string ZYN_OSServices::getApplnBtsKeyFileName() { return WMX_PRIVATE_KEY_FILE_NAME; }
std::string ZYN_OSServices::getApplnBtsCertificateFileName() { return WMX_CERTIFICATE_FILE_NAME; }
std::string ZYN_OSServices::getApplnRootCertificateFileNamePrefix() { return WMX_ROOT_CERTIFICATE_FILE_NAME_PREFIX; }

std::string ZYN_OSServices::getDefaultBtsKeyFile() { return "/usr/local/etc/cert/bts_priv_key.pem"; }
std::string ZYN_OSServices::getDefaultBtsCertFile() { return "/usr/local/etc/cert/bts_pub_cert.pem"; }
std::string ZYN_OSServices::getDefaultCertificateDataStore() { return "/usr/local/etc/cert"; }
std::string ZYN_OSServices::getBtsSiteMgrDefaultCertfLocation()
{
    return "/usr/local/etc/cert/secureFileTransfer/bts_dov_default_cert.pem";
}
std::string ZYN_OSServices::getBtsSiteMgrDefaultCertfFileName()
{
    return WMX_CERTIFICATE_STORE + "/bts_dov_default_cert.pem";
}

bool ZYN_OSServices::isWCDMA() { return NmaConfigurator::getProdType() == 1; }
bool ZYN_OSServices::isLdapSupported() { return isWCDMA(); }
