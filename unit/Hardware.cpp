#include "unit/Hardware.h"

#include "unit/Journal.h"
#include "unit/Status.h"

namespace trs::sim {

namespace {

constexpr std::size_t mostModules = 16;
constexpr long greatestModule = 0x7fffffff;
constexpr long unitSlot = 2;

} // namespace

struct Hardware::Module {
    Module(Inventory& inventory, std::string const& id, long number, std::string const& type)
        : item{.slot = number, .type = type}, object(inventory, id, reflect::className<HwmModuleClient>)
    {
        serveItem(object, item);
    }

    Item item;
    Managed object;
};

Hardware::Hardware(Inventory& inventory, std::string const& id)
    : inventory_(inventory), id_(id), item_{.slot = unitSlot, .type = "transport unit"},
      link_(inventory, id + "/EthLink", reflect::className<EthLinkClient>),
      port_(inventory, id + "/EthPort", reflect::className<EthPortClient>),
      board_(inventory, id + "/EthUnit", reflect::className<EthUnitClient>),
      unit_(inventory, id, reflect::className<HwmUnitClient>),
      led_(inventory, id + "/Led", reflect::className<HwmLedClient>),
      sensor_(inventory, id + "/Sensor", reflect::className<HwmSensorClient>),
      lmpLink_(inventory, id + "/LmpLink", reflect::className<EthLinkClient>),
      lmpPort_(inventory, id + "/LmpPort", reflect::className<EthPortClient>), states_(inventory.states(), [this] {
          if (wasWorking_ != works()) {
              wasWorking_ = works();
              led_.announce<&HwmLedClient::updateLedState>(led());
          }
      })
{
    serveRoad();
    serveItem(unit_, item_);
    addModule(1, "Ethernet interface module");
    serveModules();
    serveLedAndSensor();
}

Hardware::~Hardware() = default;

void Hardware::serveRoad()
{
    link_.servant().on<&EthLinkClient::getPort>([this] { return port_.proxy<EthPortClient>(); });
    lmpLink_.servant().on<&EthLinkClient::getPort>([this] { return lmpPort_.proxy<EthPortClient>(); });
    for (Managed* const port : {&port_, &lmpPort_}) {
        port->servant().on<&EthPortClient::getUnit>([this] { return board_.proxy<EthUnitClient>(); });
    }
    board_.servant()
        .on<&TransmissionUnitClient::getHwmUnit>([this] { return unit_.proxy<HwmUnitClient>(); })
        .on<&TransmissionUnitClient::getHwmType>([this] { return item_.actualType; })
        .on<&TransmissionUnitClient::getSlotNumber>([this] { return static_cast<unsigned char>(item_.slot); });
}

void Hardware::serveItem(Managed& object, Item& item)
{
    object.servant().on<&HwmItemClient::getSlotNumber>([&item] { return item.slot; });
    object.tells<&HwmItemClient::getActualHwType>(item.actualType);
    object.tells<&HwmItemClient::getExpectedHwType>(item.type);
    object.tells<&HwmItemClient::getHwRevision>(item.revision);
    object.tells<&HwmItemClient::getSerialNumber>(item.serialNumber);
    object.tells<&HwmItemClient::getManufacturingDate>(item.date);
    object.tells<&HwmItemClient::getActiveSwVersion>(item.active);
    object.tells<&HwmItemClient::getFallbackSwVersion>(item.fallback);
    object.tells<&HwmItemClient::getRunning>(item.isRunning);
}

bool Hardware::addModule(long number, std::string const& type)
{
    if (modules_.size() == mostModules || modules_.contains(number)) {
        return false;
    }
    modules_.emplace(number,
                     std::make_unique<Module>(inventory_, id_ + "/Module/" + std::to_string(number), number, type));
    return true;
}

bool Hardware::createModule(std::string const& id)
{
    long number = 0;
    return numberBehind(id_ + "/Module/", id, 0, greatestModule, number) && addModule(number, "");
}

bool Hardware::removeModule(std::string const& id)
{
    long number = 0;
    return numberBehind(id_ + "/Module/", id, 0, greatestModule, number) && modules_.erase(number) != 0;
}

void Hardware::serveModules()
{
    unit_.servant()
        .on<&HwmUnitClient::getModule>([this](long const& number, HwmModuleClient& module) {
            auto const found = modules_.find(number);
            if (found == modules_.end()) {
                return GetClient::FAILED;
            }
            module = found->second->object.proxy<HwmModuleClient>();
            return GetClient::OK;
        })
        .on<&HwmUnitClient::createModule>([this](long const& number, std::string const& description) {
            return statusOf<SetClient>(addModule(number, description));
        })
        .on<&HwmUnitClient::deleteModule>(
            [this](long const& number) { return statusOf<SetClient>(modules_.erase(number) != 0); });
}

void Hardware::serveLedAndSensor()
{
    unit_.servant()
        .on<&HwmUnitClient::getLed>([this](HwmLedClient& led) {
            led = led_.proxy<HwmLedClient>();
            return GetClient::OK;
        })
        .on<&HwmUnitClient::getSensor>([this](HwmSensorClient& sensor) {
            sensor = sensor_.proxy<HwmSensorClient>();
            return GetClient::OK;
        });
    led_.holds<&HwmLedClient::getLedName, &HwmLedClient::setLedName>(ledName_);
    led_.servant()
        .on<&HwmLedClient::getLedState>([this](HwmLedClient::LedState& state) {
            state = led();
            return GetClient::OK;
        })
        .on<&HwmLedClient::updateLedState>([this](HwmLedClient::LedState const& state) {
            ledState_ = state;
            return SetClient::OK;
        });
    led_.facts().addGiven<&HwmLedClient::updateLedState>(ledState_);
    led_.facts().alias(operationOf<&HwmLedClient::getLedState>().name,
                       operationOf<&HwmLedClient::updateLedState>().name);
    sensor_.holds<&HwmSensorClient::getTemperature, &HwmSensorClient::updateTemperature>(temperature_);
    sensor_.tells<&HwmSensorClient::getSensorName>(sensorName_);
}

bool Hardware::works() const
{
    return link_.faults()->isEnabled() && lmpLink_.faults()->isEnabled() && unit_.faults()->isEnabled();
}

// Something that does not work is shown by another first colour and the flag.
HwmLedClient::LedState Hardware::led() const
{
    constexpr auto fault = static_cast<HwmLedClient::LedColour>(1);
    return works() ? ledState_ : HwmLedClient::LedState{fault, ledState_.colour2, true};
}

} // namespace trs::sim
