#include "catalogue/Collections.h"

#include "catalogue/Constants.h"

#include <algorithm>

namespace trs::catalogue {

namespace {

constexpr Collection allCollections[] = {
    {"AdminStateClient", "getPolicies", "insertPolicy", "removePolicy"},
    {"ApplicationObjectClient", "getServiceConsumers", "startSupportOf", "stopSupportOf"},
    {"ApplicationObjectClient", "getServiceProviders", "isSupportedBy", "isNoLongerSupportedBy"},
    {"ApplicationObjectClient", "getPerformanceSvc", "createPerformanceSvc", "destroyPerformanceSvc",
     "PerformanceServiceClient"},
    {"DhcpAccessClient", "getDhcpConfiguration", "createDhcpConfigurationEntry", "deleteDhcpConfigurationEntry"},
    {"EthIfNetClient", "getVlanIfNet", "createVlan", "deleteVlan", "VlanIfNetClient"},
    {"EthLinkClient", "getVlanTags", "attachVlanTags", "detachVlanTags"},
    {"HwmUnitClient", "getModule", "createModule", "deleteModule", "HwmModuleClient"},
    {"IpNodeClient", "getAtmIfNetSequence", "createAtmIfNet", "deleteAtmIfNet", "AtmIfNetClient"},
    {"IpNodeClient", "getIp3IfNetSequence", "createIp3IfNet", "deleteIp3IfNet", "Ip3IfNetClient"},
    {"IpNodeClient", "getIpConfig", "setIpConfig", {}, {}, "resetIpConfig"},
    {"IpRoutingTableClient", "getIpRouteEntriesCfg", "createIpRoute", "deleteIpRoute", {}, "applyIpRouteEntriesCfg"},
    {"NtpAccessClient", "getNtpServerSequence", "createNtpServer", "deleteNtpServer"},
    {"RmAccessClient", "getRuleset", "setRuleset", "deleteRuleset"},
    {"TransmissionIfClient", "getReservationSeq", "reserve", "cancelReservation"},
};

constexpr Switch allSwitches[] = {{"ConditionClient", "isSuppressed", "suppress", "unsuppress"}};

// Where the keys of a read come from.
struct KeySource {
    std::string_view className;
    std::string_view reader;
    std::string_view constants = {}; // texts whose names have this in them
    std::string_view told = {};      // an operation that tells a list of them as its result
    int numbers = 0;                 // from 0 on, so many
    std::span<std::string_view const> names = {};
};

constexpr std::string_view rulesets[] = {"input", "output"};
constexpr int mostModules = 16;
constexpr int mostTables = 4;

constexpr KeySource keySources[] = {
    {"EthIfNetClient", "getVlanIfNet", {}, "getVlanTags"},
    {"HwmUnitClient", "getModule", {}, {}, mostModules},
    {"IpNodeClient", "getDedicatedIpRoutingTable", {}, {}, mostTables},
    {"IpNodeClient", "getIpConfig", "_ID"},
    {"RmAccessClient", "getRuleset", "DOMAIN_", {}, 0, rulesets},
};

} // namespace

std::span<Collection const> collections() { return allCollections; }

Collection const* findCollection(Operation const& reader)
{
    auto const* const found = std::ranges::find_if(allCollections, [&reader](Collection const& each) {
        return each.className == reader.className && each.reader == reader.name;
    });
    return found != std::end(allCollections) ? found : nullptr;
}

Collection const* findCollectionOf(Class const& element)
{
    auto const* const found = std::ranges::find_if(allCollections, [&element](Collection const& each) {
        return !each.elementClass.empty() && isOf(&element, each.elementClass);
    });
    return found != std::end(allCollections) ? found : nullptr;
}

Switch const* findSwitch(Operation const& reader)
{
    auto const* const found = std::ranges::find_if(allSwitches, [&reader](Switch const& each) {
        return each.className == reader.className && each.reader == reader.name;
    });
    return found != std::end(allSwitches) ? found : nullptr;
}

bool isOf(Class const* type, std::string_view base)
{
    while (type != nullptr && type->name != base) {
        type = type->base();
    }
    return type != nullptr;
}

std::vector<Value> keysOf(Operation const& reader, std::function<Value const*(std::string_view operation)> const& told)
{
    auto const* const source = std::ranges::find_if(keySources, [&reader](KeySource const& each) {
        return each.className == reader.className && each.reader == reader.name;
    });
    std::vector<Value> keys;
    if (source == std::end(keySources)) {
        return keys;
    }
    for (Constant const* const each : constantsOf(*findClass(source->className))) {
        bool const isKey = !source->constants.empty() && each->value.is_string() &&
                           each->name.find(source->constants) != std::string_view::npos;
        if (isKey) {
            keys.push_back(each->value);
        }
    }
    std::ranges::copy(source->names, std::back_inserter(keys));
    for (int number = 0; number < source->numbers; ++number) {
        keys.emplace_back(number);
    }
    Value const* const list = source->told.empty() ? nullptr : told(source->told);
    if (list != nullptr && list->contains("result") && (*list)["result"].is_array()) {
        std::ranges::copy((*list)["result"], std::back_inserter(keys));
    }
    return keys;
}

} // namespace trs::catalogue
