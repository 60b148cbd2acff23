#include "unit/ListRules.h"

#include <algorithm>
#include <iterator>

namespace trs::sim {

namespace {

using catalogue::Type;
using catalogue::Value;
using Effect = ListRule::Effect;

constexpr std::size_t mostElements = 1024;

constexpr ListRule rules[] = {
    {"ApplicationObjectClient", "isSupportedBy", Effect::insert, "getServiceProviders"},
    {"ApplicationObjectClient", "isNoLongerSupportedBy", Effect::remove, "getServiceProviders"},
    {"ApplicationObjectClient", "startSupportOf", Effect::insert, "getServiceConsumers"},
    {"ApplicationObjectClient", "stopSupportOf", Effect::remove, "getServiceConsumers"},
    {"DhcpAccessClient", "createDhcpConfigurationEntry", Effect::insert, "getDhcpConfiguration"},
    {"DhcpAccessClient", "deleteDhcpConfigurationEntry", Effect::remove, "getDhcpConfiguration"},
    {"EthLinkClient", "attachVlanTags", Effect::insert, "getVlanTags"},
    {"EthLinkClient", "detachVlanTags", Effect::remove, "getVlanTags"},
    {"EthIfNetClient", "createProxyArp", Effect::insert, "createProxyArp"},
    {"EthIfNetClient", "deleteProxyArp", Effect::remove, "createProxyArp"},
    {"TransmissionUnitClient", "reserveUtopiaAddress", Effect::insert, "reserveUtopiaAddress"},
    {"TransmissionUnitClient", "cancelUtopiaAddressReservation", Effect::remove, "reserveUtopiaAddress"},
    {"TransmissionUnitClient", "getUtopiaAddress", Effect::find, "reserveUtopiaAddress"},
    {"TransmissionIfClient", "reserve", Effect::insert, "getReservationSeq"},
    {"TransmissionIfClient", "cancelReservation", Effect::remove, "getReservationSeq"},
    {"TransmissionIfClient", "resetReservations", Effect::clear, "getReservationSeq"},
    {"Mlp3EndpointClient", "hasLink", Effect::contains, "getSupportingLinks"},
    {"Mlp3LinkClient", "hasHdlc", Effect::contains, "getHdlc"},
    {"VirtualConnectionTpClient", "isCrossConnected", Effect::isSet, "getCrossConnection"},
    {"VirtualConnectionTpClient", "isTerminatedByTrail", Effect::isSet, "getChannelTrail"},
    {"VirtualChannelConnectionTpClient", "internalResetCrossConnection", Effect::clear, "getCrossConnection"},
    {"VirtualChannelConnectionTpClient", "internalConnectChannelTrail", Effect::insert, "getChannelTrail"},
    {"VirtualChannelConnectionTpClient", "internalDisconnectChannelTrail", Effect::remove, "getChannelTrail"},
    {"AtmTrafficDescriptorClient", "internalAddReference", Effect::increase, "internalAddReference"},
    {"AtmTrafficDescriptorClient", "internalReleaseReference", Effect::decrease, "internalAddReference"},
    {"Aal5ProfileClient", "internalAddReference", Effect::increase, "internalAddReference"},
    {"Aal5ProfileClient", "internalReleaseReference", Effect::decrease, "internalAddReference"},
    {"DsvmEntryClient", "init", Effect::insert, "getValues"},
};

// Whether the value is, or has somewhere, the other one.
bool has(Value const& value, Value const& part)
{
    return value == part ||
           (value.is_structured() &&
            std::any_of(value.begin(), value.end(), [&part](Value const& each) { return has(each, part); }));
}

// An element of the type that has the arguments in the first fields of their types.
Value makeElement(Type const& type, std::vector<Value> const& arguments, std::vector<Type const*> const& types)
{
    if (types.front() == &type) {
        return arguments.front();
    }
    Value element = catalogue::zero(type);
    std::size_t next = 0;
    for (catalogue::Field const& field : type.fields) {
        if (next < types.size() && field.type == types[next]) {
            element[std::string(field.name)] = arguments[next++];
        }
    }
    return element;
}

bool insert(Type const& elementType, Value& list, std::vector<Value> const& arguments,
            std::vector<Type const*> const& types)
{
    bool const isThere = std::any_of(list.begin(), list.end(), [&](Value const& each) {
        return arguments.size() == 1 ? each == arguments.front() : has(each, arguments.front());
    });
    if (isThere || list.size() >= mostElements) {
        return false;
    }
    list.push_back(makeElement(elementType, arguments, types));
    return true;
}

bool remove(Value& list, Value const& part)
{
    Value kept = Value::array();
    std::copy_if(list.begin(), list.end(), std::back_inserter(kept),
                 [&part](Value const& element) { return !has(element, part); });
    bool const isRemoved = kept.size() != list.size();
    list = std::move(kept);
    return isRemoved;
}

bool changeSingle(Effect effect, Type const& type, Value& single, Value const& given)
{
    bool const isThere = single == given;
    if (effect == Effect::insert) {
        single = given;
        return true;
    }
    if (isThere) {
        single = catalogue::zero(type);
    }
    return isThere;
}

} // namespace

ListRule const* ruleOf(catalogue::Operation const& operation)
{
    auto const* const found = std::ranges::find_if(rules, [&operation](ListRule const& rule) {
        return rule.className == operation.className && rule.operation == operation.name;
    });
    return found != std::end(rules) ? found : nullptr;
}

bool contains(Value const& list, Value const& element)
{
    return list == element || (list.is_array() && std::find(list.begin(), list.end(), element) != list.end());
}

bool changeList(Effect effect, Type const* type, Value& list, std::vector<Value> const& arguments,
                std::vector<Type const*> const& types)
{
    bool const isSingle = type != nullptr && type->kind != Type::Kind::sequence;
    if (effect == Effect::clear) {
        list = isSingle ? catalogue::zero(*type) : Value::array();
        return true;
    }
    if (isSingle) {
        return changeSingle(effect, *type, list, arguments.front());
    }
    Type const& elementType = type != nullptr ? *type->element : *types.front();
    if (types.front() != type) {
        return effect == Effect::insert ? insert(elementType, list, arguments, types) : remove(list, arguments.front());
    }
    bool isChanged = false; // by any of the elements
    for (Value const& element : arguments.front()) {
        isChanged |=
            effect == Effect::insert ? insert(elementType, list, {element}, {&elementType}) : remove(list, element);
    }
    return isChanged;
}

} // namespace trs::sim
