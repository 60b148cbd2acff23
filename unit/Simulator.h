// The simulator's own object: what SimulatorClient reaches.
#pragma once

#include "catalogue/SimulatorClient.h"
#include "rmi/Servant.h"

#include <functional>
#include <string>

namespace trs::sim {

class Unit;

class Simulator {
public:
    // Carries out a command: empty, or what is wrong with it.
    using Executor = std::function<std::string(std::string const& command)>;

    explicit Simulator(Unit& unit);
    Simulator(Simulator const&) = delete;
    Simulator& operator=(Simulator const&) = delete;

    // Until then there are no commands.
    void setExecutor(Executor executor) { executor_ = std::move(executor); }

private:
    void serveTimeAndState();
    void serveFaults();

    Unit& unit_;
    Executor executor_;
    Servant servant_{TipprmiOID(SimulatorClient::SIMULATOR_OID)};
};

} // namespace trs::sim
