// The simulator's own object: what SimulatorClient reaches.
#pragma once

#include "catalogue/SimulatorClient.h"
#include "unit/Object.h"

#include <functional>
#include <string>

namespace trs::sim {

class Unit;

class Simulator {
public:
    // Carries out a command: empty, or what is wrong with it. `output` takes what it lists.
    using Executor = std::function<std::string(std::string const& command, std::string& output)>;

    Simulator(Inventory& inventory, Unit& unit);
    Simulator(Simulator const&) = delete;
    Simulator& operator=(Simulator const&) = delete;

    // Until then there are no commands.
    void setExecutor(Executor executor) { executor_ = std::move(executor); }

private:
    void serveTimeAndState();
    void serveFaults();

    Unit& unit_;
    Executor executor_;
    Object object_;
};

} // namespace trs::sim
