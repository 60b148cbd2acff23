#include "tools/trsadapter/Identity.h"

#include "adapter/ZYN_OSServices.h"

namespace trs::adapter {

void Identity::refresh()
{
    UnitIdentity asked = get();
    if (long const btsId = ZYN_OSServices::getBsId(); btsId >= 0) {
        asked.btsId = btsId;
    }
    if (std::string address; ZYN_OSServices::getPublicIp(address)) {
        asked.publicAddress = address;
    }
    ZYN_OSServices::getTransportEthIp(asked.transportAddress);
    std::lock_guard const lock(mutex_);
    identity_ = asked;
}

void Identity::setPublicAddress(std::string const& address)
{
    std::lock_guard const lock(mutex_);
    identity_.publicAddress = address;
}

UnitIdentity Identity::get() const
{
    std::lock_guard const lock(mutex_);
    return identity_;
}

} // namespace trs::adapter
