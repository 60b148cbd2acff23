#include "unit/Vlan.h"

#include "unit/Setting.h"

namespace trs::sim {

Vlan::Vlan(Inventory& inventory, std::string const& owner, VlanIfNetClient::VlanIfNetCreateParams const& params)
    : Interface(inventory, reflect::className<VlanIfNetClient>, owner + "/Vlan/" + std::to_string(params.vlanId),
                "vlan", static_cast<short>(params.vlanId), params.ipAddressInfo.ipAddress),
      id_(params.vlanId), committedInfoRate_(params.committedInfoRate), sir_(params.sir),
      shaperBurstSize_(params.shaperBurstSize), instanceId_(params.vlanInstanceId), addressInfo_(params.ipAddressInfo),
      isShaped_(params.vlanShapingEnabled), hasQos_(params.qosEnabled), hasCesopsn_(params.cesopsn)
{
    using Client = VlanIfNetClient;
    Servant& vlan = servant();
    serveSetting<&Client::getVlanId, &Client::setVlanId>(vlan, id_);
    serveSetting<&Client::getCommittedInfoRate, &Client::setCommittedInfoRate>(vlan, committedInfoRate_);
    serveSetting<&Client::getSIR, &Client::setSIR>(vlan, sir_);
    serveSetting<&Client::getShaperBurstSize, &Client::setShaperBurstSize>(vlan, shaperBurstSize_);
    serveSetting<&Client::getVlanShapingEnabled, &Client::setVlanShapingEnabled>(vlan, isShaped_);
    serveSetting<&Client::getQosEnabled, &Client::setQosEnabled>(vlan, hasQos_);
    serveSetting<&Client::getCesopsn, &Client::setCesopsn>(vlan, hasCesopsn_);
    vlan.on<&Client::getVlanInstanceId>([this](unsigned long& instanceId) {
            instanceId = instanceId_;
            return GetClient::OK;
        })
        .on<&Client::setIpAddressInfo>([this](Client::IpAddressInfo const& info) {
            addressInfo_ = info;
            setFirstAddress(info.ipAddress);
            return SetClient::OK;
        })
        .on<&Client::getIpAddressInfo>([this](Client::IpAddressInfo& info) {
            info = addressInfo_;
            return GetClient::OK;
        });
}

} // namespace trs::sim
