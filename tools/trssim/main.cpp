// trssim: a simulated unit, driven by commands.
#include "platform/host/Broker.h"
#include "tools/support/CommandLine.h"
#include "tools/trssim/Equipment.h"
#include "tools/trssim/IpNode.h"
#include "tools/trssim/UnitCommands.h"

#include <cstdio>

namespace {

constexpr char const* description =
    "A simulated unit: objects of all interfaces, reached from the IP node under its well-known identifier, and the\n"
    "network management agent NmiRmiAdapterServer. `trsctl tree` shows them. The commands, one a line from standard\n"
    "input, are for the agent and for the application object AppObject-1; `help` lists them.";

constexpr int cannotServe = 1;

} // namespace

int main(int argc, char** argv)
{
    std::vector<std::string> endpoints;
    std::string address;
    std::vector<std::string> commands;
    tools::CommandLine line("trssim", description, 4);
    line.options()
        .add_option("--listen", endpoints,
                    "Where to serve: unix:PATH, tcp:HOST:PORT or tcp:PORT; may be given several times (default: " +
                        tools::CommandLine::defaultEndpoint() + ")")
        ->type_name("ENDPOINT")
        ->allow_extra_args(false)
        ->check(CLI::Validator(tools::CommandLine::checkEndpoint, ""));
    line.options().add_option("--address", address, "The public address at the start")->type_name("ADDRESS");
    line.options()
        .add_option("--do", commands, "A command to execute at the start; may be given several times")
        ->type_name("COMMAND")
        ->allow_extra_args(false);
    line.takeCommands();
    if (std::optional<int> const code = line.parse(argc, argv)) {
        return *code;
    }
    if (endpoints.empty()) {
        endpoints.push_back(tools::CommandLine::defaultEndpoint());
    }

    tools::Console console("stop");
    sim::ApplicationObject object("AppObject-1");
    sim::Inventory inventory;
    inventory.add("AppObject-1", *catalogue::findClass("ApplicationObjectClient"));
    inventory.add(NmiRmiAdapterClient::NMI_RMI_ADAPTER_SER_NAME, *catalogue::findClass("NmiRmiAdapterClient"));
    sim::IpNode ipNode(inventory);
    sim::UnitAgent agent(address, [&ipNode](std::string const& changed) { ipNode.setPrimaryAddress(changed); });
    sim::Equipment const equipment(inventory);
    sim::addCommands(console, agent, object, inventory);
    for (std::string const& command : commands) {
        if (std::string const wrong = console.execute(command); !wrong.empty()) {
            std::fprintf(stderr, "--do: %s\n", wrong.c_str());
            return tools::CommandLine::wrongUsage;
        }
    }

    host::Broker& broker = host::Broker::instance();
    for (std::string const& endpoint : endpoints) {
        if (std::string const why = broker.serve(endpoint); !why.empty()) {
            std::fprintf(stderr, "%s\n", why.c_str());
            broker.stop();
            return cannotServe;
        }
    }
    for (std::string const& endpoint : broker.endpoints()) {
        tools::say("ready on " + endpoint);
    }
    console.run(line.exitsOnEof());
    agent.letGo();
    broker.stop();
}
