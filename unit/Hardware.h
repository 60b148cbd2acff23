// The hardware of the simulated unit, from the Ethernet link that leads to it: what EthLinkClient, EthPortClient,
// EthUnitClient, HwmUnitClient, HwmModuleClient, HwmLedClient and HwmSensorClient reach.
#pragma once

#include "clients/ip/EthLinkClient.h"
#include "clients/services/HwmUnitClient.h"
#include "unit/Managed.h"
#include "unit/Signal.h"

#include <map>
#include <memory>
#include <string>

namespace trs::sim {

// The unit with its modules, LED and sensor; and two Ethernet links, the transport interface's and the LMP's, each with
// a port. A link works until its condition LOC tells that the cable is lost; the LED shows when something does not
// work.
class Hardware {
public:
    Hardware(Inventory& inventory, std::string const& id);
    Hardware(Hardware const&) = delete;
    Hardware& operator=(Hardware const&) = delete;
    ~Hardware();

    // By the identifier that the module is to have; false when that is none, or there already.
    bool createModule(std::string const& id);
    bool removeModule(std::string const& id);

    auto link() const { return link_.proxy<EthLinkClient>(); }
    auto lmpLink() const { return lmpLink_.proxy<EthLinkClient>(); }

private:
    void serveRoad();
    void serveModules();
    void serveLedAndSensor();
    // What an item tells of itself.
    struct Item {
        long slot;
        std::string type; // that is expected
        std::string actualType = type;
        std::string revision = "A1";
        std::string serialNumber = "S" + std::to_string(1000 + slot);
        std::string date = "2011-05-30";
        std::string active = "1.0";
        std::string fallback = "0.9";
        bool isRunning = true;
    };
    struct Module;
    static void serveItem(Managed& object, Item& item);
    bool works() const;
    HwmLedClient::LedState led() const;
    bool addModule(long number, std::string const& type);

    Inventory& inventory_;
    std::string const id_;
    Item item_;
    std::map<long, std::unique_ptr<Module>> modules_;
    HwmLedClient::LedState ledState_{}; // while all works
    bool wasWorking_ = true;
    std::string ledName_ = "status";
    long temperature_ = 41; // degrees Celsius
    std::string sensorName_ = "board temperature";
    Managed link_;
    Managed port_;
    Managed board_; // the transmission unit
    Managed unit_;
    Managed led_;
    Managed sensor_;
    Managed lmpLink_;
    Managed lmpPort_;
    Signal::Subscription const states_;
};

} // namespace trs::sim
