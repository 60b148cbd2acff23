#include "unit/Hardware.h"

#include "unit/Setting.h"
#include "unit/Status.h"

namespace trs::sim {

namespace {

constexpr std::size_t mostModules = 16;
constexpr long greatestModule = 0x7fffffff;
constexpr long unitSlot = 2;

} // namespace

Hardware::Hardware(Inventory& inventory, std::string const& id)
    : inventory_(inventory), id_(id), link_(inventory, id + "/EthLink", reflect::className<EthLinkClient>),
      port_(inventory, id + "/EthPort", reflect::className<EthPortClient>),
      board_(inventory, id + "/EthUnit", reflect::className<EthUnitClient>),
      unit_(inventory, id, reflect::className<HwmUnitClient>),
      led_(inventory, id + "/Led", reflect::className<HwmLedClient>),
      sensor_(inventory, id + "/Sensor", reflect::className<HwmSensorClient>)
{
    serveRoad();
    serveItem(unit_.servant(), unitSlot, "transport unit");
    addModule(1, "Ethernet interface module");
    serveModules();
    serveLedAndSensor();
}

void Hardware::serveRoad()
{
    link_.servant().on<&EthLinkClient::getPort>([this] { return port_.proxy<EthPortClient>(); });
    port_.servant().on<&EthPortClient::getUnit>([this] { return board_.proxy<EthUnitClient>(); });
    board_.servant()
        .on<&TransmissionUnitClient::getHwmUnit>([this] { return unit_.proxy<HwmUnitClient>(); })
        .on<&TransmissionUnitClient::getHwmType>([] { return std::string("transport unit"); })
        .on<&TransmissionUnitClient::getSlotNumber>([] { return static_cast<unsigned char>(unitSlot); });
}

void Hardware::serveItem(Servant& item, long slot, std::string const& type) const
{
    auto const tells = [](std::string const& told) {
        return [told](std::string& text) {
            text = told;
            return GetClient::OK;
        };
    };
    item.on<&HwmItemClient::getSlotNumber>([slot] { return slot; })
        .on<&HwmItemClient::getExpectedHwType>(tells(type))
        .on<&HwmItemClient::getActualHwType>(tells(type))
        .on<&HwmItemClient::getHwRevision>(tells("A1"))
        .on<&HwmItemClient::getSerialNumber>(tells("S" + std::to_string(1000 + slot)))
        .on<&HwmItemClient::getManufacturingDate>(tells("2011-05-30"))
        .on<&HwmItemClient::getActiveSwVersion>(tells("1.0"))
        .on<&HwmItemClient::getFallbackSwVersion>(tells("0.9"))
        .on<&HwmItemClient::getRunning>([](bool& isRunning) {
            isRunning = true;
            return GetClient::OK;
        });
}

bool Hardware::addModule(long number, std::string const& type)
{
    if (modules_.size() == mostModules || modules_.contains(number)) {
        return false;
    }
    auto const place =
        modules_.emplace(number, std::make_unique<PlainObject>(inventory_, id_ + "/Module/" + std::to_string(number),
                                                               reflect::className<HwmModuleClient>));
    serveItem(place.first->second->servant(), number, type);
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
            module = found->second->proxy<HwmModuleClient>();
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
    serveSetting<&HwmLedClient::getLedState, &HwmLedClient::updateLedState>(led_.servant(), ledState_);
    serveSetting<&HwmLedClient::getLedName, &HwmLedClient::setLedName>(led_.servant(), ledName_);
    serveSetting<&HwmSensorClient::getTemperature, &HwmSensorClient::updateTemperature>(sensor_.servant(),
                                                                                        temperature_);
    sensor_.servant().on<&HwmSensorClient::getSensorName>([](std::string& name) {
        name = "board temperature";
        return GetClient::OK;
    });
}

} // namespace trs::sim
