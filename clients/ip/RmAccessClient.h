// RmAccessClient: the access rule service of the IP node, handed out by IpNodeClient::getRmAccess().
#pragma once

#include "rmi/ApplicationObjectClient.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/Record.h"
#include "rmi/ResponseInfo.h"
#include "rmi/TipprmiArray.h"
#include "rmi/TipprmiSequence.h"

#include <string>

// Keeps named rule sets of exceptions, and a restricted mode. Each exception has a type, a protocol, a direction and
// two endpoints. The server decides what the values of the enumerations mean and which of them it takes; a proxy
// carries any. Out-arguments count only when the status is OK.
class RmAccessClient : public ApplicationObjectClient {
public:
    using Parent = ApplicationObjectClient;
    using ApplicationObjectClient::ApplicationObjectClient;

    using ClientSpecificMetaObject = ProxyMetaObject<RmAccessClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // The performance counter of discarded packages.
    static constexpr int PM_DISCARDED_PACKAGES = 1;
    // Names of domains; the server decides where they count.
    static std::string const DOMAIN_LMP;
    static std::string const DOMAIN_TRS;
    static std::string const DOMAIN_BTS;
    static std::string const DOMAIN_INTERNAL;

    // The state of a rule set.
    enum RulesetState : int {
        RULESET_STATE_0 = 0,
    };
    // The state of an exception.
    enum ExceptionState : int {
        EXCEPTION_STATE_0 = 0,
    };
    // The type of an exception.
    enum ExceptionType : int {
        EXCEPTION_TYPE_0 = 0,
    };
    // The protocol that an exception is about.
    enum ExceptionProto : int {
        EXCEPTION_PROTO_0 = 0,
    };
    // The direction that an exception is about.
    enum ExceptionDirect : int {
        EXCEPTION_DIRECT_0 = 0,
    };
    // The kind of an endpoint: which of its parts apply.
    enum SourceType : int {
        SOURCE_TYPE_0 = 0,
    };
    // The kind of an endpoint's address.
    enum IpAddrType : int {
        IP_ADDR_TYPE_0 = 0,
    };
    // A flag of an endpoint's address.
    enum IpAddrFlag : int {
        IP_ADDR_FLAG_0 = 0,
    };
    // The kind of an endpoint's port part: the range or the list.
    enum PortType : int {
        PORT_TYPE_0 = 0,
    };
    // The kind of an endpoint's interface part.
    enum InterfaceType : int {
        INTERFACE_TYPE_0 = 0,
    };
    // The state of the restricted mode.
    enum RestrictedModeState : int {
        RESTRICTED_MODE_STATE_0 = 0,
    };

    // The address part of an endpoint: two IPv4 addresses, an octet per element.
    struct IpAddr {
        IpAddrType type;
        IpAddrFlag flag;
        TipprmiArray<short, 4> address1;
        TipprmiArray<short, 4> address2;
    };
    // A range of ports.
    struct PortRange {
        unsigned long first;
        unsigned long second;
    };
    // The port part of an endpoint: a range and a list of single ports, both of which always travel.
    struct Port {
        PortType type;
        PortRange range;                      // 0..65535 (RFC 768, RFC 9293)
        TipprmiSequence<unsigned long> ports; // 0..65535, likewise
    };
    // One interface label; the server decides what the number means.
    struct InterfaceLabel {
        std::string label;
        long number;
    };
    // The interface part of an endpoint.
    struct Interface {
        InterfaceType type;
        TipprmiSequence<InterfaceLabel> labels;
    };
    // One endpoint. All parts travel, whichever apply; the server decides what the text means.
    struct Source {
        SourceType type;
        IpAddr address;
        Port port;
        Interface interface;
        std::string text;
    };
    // One exception. Both endpoints travel, even when one does not apply.
    struct Exception {
        std::string name;
        ExceptionState state;
        ExceptionType type;
        ExceptionProto protocol;
        ExceptionDirect direction;
        TipprmiArray<Source, 2> endpoints;
    };
    // One rule set.
    struct Ruleset {
        std::string name;
        RulesetState state;
        TipprmiSequence<Exception> exceptions;
    };

    // Looks up an endpoint description by a text.
    virtual ResponseInfo<GetClient> getSource(std::string const& text, Source& source) const;
    // Adds an exception to the rule set of that name.
    virtual ResponseInfo<SetClient> createException(std::string const& ruleset, Exception const& exception) const;
    // Removes an exception, named with its rule set, from that set. Which of the two names comes first, the server
    // decides.
    virtual ResponseInfo<SetClient> deleteException(std::string const& ruleset, std::string const& exception) const;
    // Sets a rule set with all its exceptions.
    virtual ResponseInfo<SetClient> setRuleset(Ruleset const& ruleset) const;
    // Reads the rule set of that name.
    virtual ResponseInfo<GetClient> getRuleset(std::string const& name, Ruleset& ruleset) const;
    // Removes the rule set of that name.
    virtual ResponseInfo<SetClient> deleteRuleset(std::string const& name) const;
    // Clears the rule set of that name.
    virtual ResponseInfo<SetClient> clearRuleset(std::string const& name) const;
    // Sets the state of the rule set of that name.
    virtual ResponseInfo<SetClient> switchRuleset(std::string const& name, RulesetState const& state) const;
    // Sets the state of an exception, named with its rule set as in deleteException().
    virtual ResponseInfo<SetClient> switchException(std::string const& ruleset, std::string const& exception,
                                                    ExceptionState const& state) const;
    // Sets the state of the restricted mode.
    virtual ResponseInfo<SetClient> setRestrictedMode(RestrictedModeState const& state) const;
    // Reads the state of the restricted mode.
    virtual ResponseInfo<GetClient> getRestrictedMode(RestrictedModeState& state) const;
    // Triggers the service for a change, without arguments or an answer; what that does, the server decides.
    virtual void changeTrigger() const;
    // Reads the exceptions that apply now.
    virtual ResponseInfo<GetClient> getApplicableExceptions(TipprmiSequence<Exception>& exceptions) const;
};

template <>
struct RecordFields<RmAccessClient::IpAddr>
    : Fields<&RmAccessClient::IpAddr::type, &RmAccessClient::IpAddr::flag, &RmAccessClient::IpAddr::address1,
             &RmAccessClient::IpAddr::address2> {};

template <>
struct RecordFields<RmAccessClient::PortRange>
    : Fields<&RmAccessClient::PortRange::first, &RmAccessClient::PortRange::second> {};

template <>
struct RecordFields<RmAccessClient::Port>
    : Fields<&RmAccessClient::Port::type, &RmAccessClient::Port::range, &RmAccessClient::Port::ports> {};

template <>
struct RecordFields<RmAccessClient::InterfaceLabel>
    : Fields<&RmAccessClient::InterfaceLabel::label, &RmAccessClient::InterfaceLabel::number> {};

template <>
struct RecordFields<RmAccessClient::Interface>
    : Fields<&RmAccessClient::Interface::type, &RmAccessClient::Interface::labels> {};

template <>
struct RecordFields<RmAccessClient::Source>
    : Fields<&RmAccessClient::Source::type, &RmAccessClient::Source::address, &RmAccessClient::Source::port,
             &RmAccessClient::Source::interface, &RmAccessClient::Source::text> {};

template <>
struct RecordFields<RmAccessClient::Exception>
    : Fields<&RmAccessClient::Exception::name, &RmAccessClient::Exception::state, &RmAccessClient::Exception::type,
             &RmAccessClient::Exception::protocol, &RmAccessClient::Exception::direction,
             &RmAccessClient::Exception::endpoints> {};

template <>
struct RecordFields<RmAccessClient::Ruleset>
    : Fields<&RmAccessClient::Ruleset::name, &RmAccessClient::Ruleset::state, &RmAccessClient::Ruleset::exceptions> {};

template <>
struct Operations<RmAccessClient>
    : OperationList<RmAccessClient, 0x28478936, Operation<0, &RmAccessClient::getSource>,
                    Operation<1, &RmAccessClient::createException>, Operation<2, &RmAccessClient::deleteException>,
                    Operation<3, &RmAccessClient::setRuleset>, Operation<4, &RmAccessClient::getRuleset>,
                    Operation<5, &RmAccessClient::deleteRuleset>, Operation<6, &RmAccessClient::clearRuleset>,
                    Operation<7, &RmAccessClient::switchRuleset>, Operation<8, &RmAccessClient::switchException>,
                    Operation<9, &RmAccessClient::setRestrictedMode>, Operation<10, &RmAccessClient::getRestrictedMode>,
                    Operation<11, &RmAccessClient::changeTrigger>,
                    Operation<12, &RmAccessClient::getApplicableExceptions>> {};
