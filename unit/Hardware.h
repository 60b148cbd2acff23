// The hardware of the simulated unit, from the Ethernet link that leads to it: what EthLinkClient, EthPortClient,
// EthUnitClient, HwmUnitClient, HwmModuleClient, HwmLedClient and HwmSensorClient reach.
#pragma once

#include "clients/ip/EthLinkClient.h"
#include "clients/services/HwmUnitClient.h"
#include "unit/Managed.h"

#include <map>
#include <memory>
#include <string>

namespace trs::sim {

class Hardware {
public:
    Hardware(Inventory& inventory, std::string const& id);
    Hardware(Hardware const&) = delete;
    Hardware& operator=(Hardware const&) = delete;

    // By the identifier that the module is to have; false when that is none, or there already.
    bool createModule(std::string const& id);
    bool removeModule(std::string const& id);

    auto link() const { return link_.proxy<EthLinkClient>(); }

private:
    void serveRoad();
    void serveModules();
    void serveLedAndSensor();
    void serveItem(Servant& item, long slot, std::string const& type) const;
    bool addModule(long number, std::string const& type);

    Inventory& inventory_;
    std::string const id_;
    std::map<long, std::unique_ptr<PlainObject>> modules_;
    HwmLedClient::LedState ledState_{};
    std::string ledName_ = "status";
    long temperature_ = 41; // degrees Celsius
    PlainObject link_;
    PlainObject port_;
    PlainObject board_; // the transmission unit
    PlainObject unit_;
    PlainObject led_;
    PlainObject sensor_;
};

} // namespace trs::sim
