#include "unit/Vlan.h"

#include <utility>

namespace trs::sim {

Vlan::Vlan(Inventory& inventory, std::string const& id, VlanIfNetClient::VlanIfNetCreateParams const& params,
           Owner owner)
    : IpInterface(inventory, reflect::className<VlanIfNetClient>, id, "vlan", static_cast<short>(params.vlanId),
                  params.ipAddressInfo.ipAddress),
      id_(params.vlanId), committedInfoRate_(params.committedInfoRate), sir_(params.sir),
      shaperBurstSize_(params.shaperBurstSize), instanceId_(params.vlanInstanceId), addressInfo_(params.ipAddressInfo),
      isShaped_(params.vlanShapingEnabled), hasQos_(params.qosEnabled), hasCesopsn_(params.cesopsn)
{
    using Client = VlanIfNetClient;
    Managed& vlan = object();
    vlan.tells<&Client::getVlanId>(id_);
    vlan.servant().on<&Client::setVlanId>([this, isFree = std::move(owner.isFree)](unsigned short const& wanted) {
        bool const isTaken = wanted != id_ && !isFree(wanted);
        id_ = isTaken ? id_ : wanted;
        return isTaken ? SetClient::FAILED : SetClient::OK;
    });
    vlan.holds<&Client::getCommittedInfoRate, &Client::setCommittedInfoRate>(committedInfoRate_);
    vlan.holds<&Client::getSIR, &Client::setSIR>(sir_);
    vlan.holds<&Client::getShaperBurstSize, &Client::setShaperBurstSize>(shaperBurstSize_);
    vlan.holds<&Client::getVlanShapingEnabled, &Client::setVlanShapingEnabled>(isShaped_);
    vlan.holds<&Client::getQosEnabled, &Client::setQosEnabled>(hasQos_);
    vlan.holds<&Client::getCesopsn, &Client::setCesopsn>(hasCesopsn_);
    vlan.holds<&Client::getIpAddressInfo, &Client::setIpAddressInfo>(
        addressInfo_, [this] { setFirstAddress(addressInfo_.ipAddress); });
    vlan.facts().addTold<&Client::getIpAddressInfo>(
        addressInfo_,
        [this](Client::IpAddressInfo const& info) {
            addressInfo_ = info;
            setFirstAddress(info.ipAddress);
            return true;
        },
        &operationOf<&Client::setIpAddressInfo>());
    onAddresses([this](Address const& first) { addressInfo_.ipAddress = first; });
    vlan.tells<&Client::getVlanInstanceId>(instanceId_);
    standOn(std::move(owner.isUp));
    lookBelow();
}

} // namespace trs::sim
