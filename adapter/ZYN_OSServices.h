// ZYN_OSServices: where the site management adapter lives: its peer, the unit's own identities, its certificates, keys
// and files.
#pragma once

#include <string>

// Nothing is kept between calls: each reads its configuration file or asks the unit anew. The functions may be called
// from any thread; those that ask the IP node bring the thread into the state that such calls require. Addresses are
// IPv4 in dotted form.
//
// Of a configuration file the first line counts, up to its line feed and at most 511 bytes, as it stands: blanks, a
// carriage return and NUL bytes belong to it. A file that can be opened but not read, such as a directory, counts as
// empty.
class ZYN_OSServices {
public:
    static std::string const NE_NAME_KORVA_BTS;
    static std::string const WMX_TLS_CIPHER_SUITE;
    // The adapter's own certificates and keys.
    static std::string const WMX_CERTIFICATE_STORE;
    static std::string const WMX_PRIVATE_KEY_FILE_NAME;
    static std::string const WMX_CERTIFICATE_FILE_NAME;
    static std::string const WMX_ROOT_CERTIFICATE_FILE_NAME_PREFIX;
    static std::string const WMX_ROOT_CERTIFICATE_STORE; // empty: root certificates are in WMX_CERTIFICATE_STORE
    // Those of certificate management (CMP).
    static std::string const WMX_CMP_SECURE_STORE_DIR;
    static std::string const WMX_CMP_SECURE_STORE;
    static std::string const WMX_CMP_BTS_KEY_FILE;
    static std::string const WMX_CMP_BTS_CERT_FILE;
    static std::string const WMX_CMP_ROOT_CERT_FILE_PREFIX;
    static std::string const WMX_CMP_PARAMETERS_DB;
    static std::string const WMX_CMP_SECURE_STORE_PASSIVE;

    // The port of the BTS O&M peer: the number that btsomPort.conf begins with, 0 when it begins with none, 12000
    // without the file. The range is not checked; beyond that of int the number is what atoi makes of it.
    static int getBTSOMPort();
    // The address of the BTS O&M peer: btsomIpAddr.conf unchecked, or the product type's default address. Always true.
    static bool getBTSOMIpAddress(std::string& address);
    // The address of the local management port. False when it is 0.0.0.0, which `address` then says.
    static bool getLmpIpAddress(std::string& address);
    // The BTS identifier, or -1 when the IP node does not tell.
    static long getBsId();
    // The public address of the BTS, or when there is none, that of the local management port. False when the IP node
    // failed to tell, even if the other address then served, or when that is needed and unknown. Where the IP node is
    // out of reach, a usable address in `address` stays and is approved.
    static bool getPublicIp(std::string& address);
    // The address of the transport Ethernet interface. False, and `address` is as it was, when the IP node or the
    // interface does not tell; an address that begins with 0 is none. The log has either outcome.
    static bool getTransportEthIp(std::string& address);

    // The name of the adapter's compressed log file, with the BTS identifier in it, and its directory.
    static std::string getRuemLogfileName();
    static std::string getRuemLogfilePath();

    static std::string getNEName();
    static std::string getTlsCipherSuite();

    static std::string getCmpCertificateDataStore();
    static std::string getCmpPassiveCertificateDataStore();
    static std::string getCmpBtsKeyFileName();
    static std::string getCmpBtsCertificateFileName();
    static std::string getCmpRootCertificateFileNamePrefix();
    static std::string getCmpParametersDbName();

    static std::string getApplnCertificateDataStore();
    static std::string getApplnRootCertificateDataStore();
    static std::string getApplnBtsKeyFileName();
    static std::string getApplnBtsCertificateFileName();
    static std::string getApplnRootCertificateFileNamePrefix();

    // What the unit was delivered with.
    static std::string getDefaultBtsKeyFile();
    static std::string getDefaultBtsCertFile();
    static std::string getDefaultCertificateDataStore();
    // The site manager's default certificate: as delivered, and in the adapter's store.
    static std::string getBtsSiteMgrDefaultCertfLocation();
    static std::string getBtsSiteMgrDefaultCertfFileName();

    // Whether the unit is a WCDMA one; only those support LDAP.
    static bool isWCDMA();
    static bool isLdapSupported();
};
