// The hardware of the simulated unit, from the Ethernet link that leads to it: what EthLinkClient, EthPortClient,
// EthUnitClient, HwmUnitClient, HwmModuleClient, HwmLedClient and HwmSensorClient reach.
#pragma once

#include "clients/ip/EthLinkClient.h"
#include "clients/services/HwmUnitClient.h"
#include "rmi/Servant.h"

#include <map>
#include <memory>
#include <string>

namespace sim {

class Hardware {
public:
    explicit Hardware(std::string const& id);
    Hardware(Hardware const&) = delete;
    Hardware& operator=(Hardware const&) = delete;

    auto link() const { return EthLinkClient(&link_); }

private:
    void serveRoad();
    void serveModules();
    void serveLedAndSensor();
    void serveItem(Servant& item, long slot, std::string const& type) const;
    bool addModule(long number, std::string const& type);

    std::string const id_;
    std::map<long, std::unique_ptr<Servant>> modules_;
    HwmLedClient::LedState ledState_{};
    std::string ledName_ = "status";
    long temperature_ = 41; // degrees Celsius
    Servant link_;
    Servant port_;
    Servant board_; // the transmission unit
    Servant unit_;
    Servant led_;
    Servant sensor_;
};

} // namespace sim
