#include "catalogue/ObjectName.h"

#include "adapter/NmiRmiAdapterClient.h"
#include "catalogue/Class.h"
#include "catalogue/SimulatorClient.h"
#include "clients/ip/IpNodeClient.h"

#include <algorithm>
#include <array>

namespace trs::catalogue {

std::span<ObjectName const> ObjectName::wellKnown()
{
    static std::array<ObjectName, 3> const names{
        {{"IpNodeClient", IpNodeClient::IPNODE_OID},
         {"NmiRmiAdapterClient", NmiRmiAdapterClient::NMI_RMI_ADAPTER_SER_NAME},
         {"SimulatorClient", SimulatorClient::SIMULATOR_OID}}};
    return names;
}

std::string ObjectName::parse(std::string const& text, ObjectName& name)
{
    auto const found = std::ranges::find(wellKnown(), text, &ObjectName::id);
    if (found != wellKnown().end()) {
        name = *found;
        return {};
    }
    std::size_t const colon = text.find(':');
    if (colon == std::string::npos || colon == 0 || colon + 1 == text.size()) {
        return '\'' + text + "' is no object: it is neither Class:identifier nor a well-known " +
               IpNodeClient::IPNODE_OID + " or " + NmiRmiAdapterClient::NMI_RMI_ADAPTER_SER_NAME;
    }
    name = {text.substr(0, colon), text.substr(colon + 1)};
    return {};
}

std::string ObjectName::text() const
{
    std::string name = className;
    if (name.ends_with("Client")) {
        name.resize(name.size() - 6);
    }
    return name + ':' + id;
}

} // namespace trs::catalogue
