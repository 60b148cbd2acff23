#include "tools/trssim/Hardware.h"

#include "tools/trssim/Setting.h"

namespace sim {

namespace {

constexpr std::size_t mostModules = 16;
constexpr long unitSlot = 2;

} // namespace

Hardware::Hardware(std::string const& id)
    : id_(id), link_(TipprmiOID(id + "/EthLink")), port_(TipprmiOID(id + "/EthPort")),
      board_(TipprmiOID(id + "/EthUnit")), unit_(TipprmiOID(id)), led_(TipprmiOID(id + "/Led")),
      sensor_(TipprmiOID(id + "/Sensor"))
{
    serveRoad();
    serveItem(unit_, unitSlot, "transport unit");
    addModule(1, "Ethernet interface module");
    serveModules();
    serveLedAndSensor();
}

void Hardware::serveRoad()
{
    link_.on<&EthLinkClient::getPort>([this] { return EthPortClient(&port_); });
    port_.on<&EthPortClient::getUnit>([this] { return EthUnitClient(&board_); });
    board_.on<&TransmissionUnitClient::getHwmUnit>([this] { return HwmUnitClient(&unit_); })
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
        modules_.emplace(number, std::make_unique<Servant>(TipprmiOID(id_ + "/Module/" + std::to_string(number))));
    serveItem(*place.first->second, number, type);
    return true;
}

void Hardware::serveModules()
{
    unit_
        .on<&HwmUnitClient::getModule>([this](long const& number, HwmModuleClient& module) {
            auto const found = modules_.find(number);
            if (found == modules_.end()) {
                return GetClient::FAILED;
            }
            module = HwmModuleClient(found->second.get());
            return GetClient::OK;
        })
        .on<&HwmUnitClient::createModule>([this](long const& number, std::string const& description) {
            return addModule(number, description) ? SetClient::OK : SetClient::FAILED;
        })
        .on<&HwmUnitClient::deleteModule>(
            [this](long const& number) { return modules_.erase(number) != 0 ? SetClient::OK : SetClient::FAILED; });
}

void Hardware::serveLedAndSensor()
{
    unit_
        .on<&HwmUnitClient::getLed>([this](HwmLedClient& led) {
            led = HwmLedClient(&led_);
            return GetClient::OK;
        })
        .on<&HwmUnitClient::getSensor>([this](HwmSensorClient& sensor) {
            sensor = HwmSensorClient(&sensor_);
            return GetClient::OK;
        });
    serveSetting<&HwmLedClient::getLedState, &HwmLedClient::updateLedState>(led_, ledState_);
    serveSetting<&HwmLedClient::getLedName, &HwmLedClient::setLedName>(led_, ledName_);
    serveSetting<&HwmSensorClient::getTemperature, &HwmSensorClient::updateTemperature>(sensor_, temperature_);
    sensor_.on<&HwmSensorClient::getSensorName>([](std::string& name) {
        name = "board temperature";
        return GetClient::OK;
    });
}

} // namespace sim
