// trssim: a simulated unit, driven by commands.
#include "broker/Broker.h"
#include "broker/PrintableText.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/support/CommandLine.h"
#include "tools/trssim/Fleet.h"
#include "tools/trssim/UnitCommands.h"
#include "unit/Journal.h"
#include "unit/Scenario.h"

#include <chrono>
#include <cstdio>

namespace {

constexpr char const* description = "A simulated unit: objects of all interfaces, reached from the IP node under its "
                                    "well-known identifier, the network\n"
                                    "management agent NmiRmiAdapterServer, and the simulator's own controls under "
                                    "Simulator. `trsctl tree` shows them.\n"
                                    "The commands, one a line from standard input, are listed by `help`; `trsctl call "
                                    "Simulator execute` takes them too.";

constexpr int cannotServe = 1;
constexpr int hasLostOutput = 1;
constexpr unsigned mostUnits = 1000;
constexpr std::chrono::milliseconds endTime{500}; // for answers under way

enum class TimeSource { real, stepped };

struct Options {
    std::vector<std::string> endpoints;
    std::string address;
    std::vector<std::string> commands;
    std::string scenario;
    std::string save;
    std::string state;
    std::string callLog;
    unsigned long seed = 0;
    TimeSource timeSource = TimeSource::real;
    trs::sim::Load::Profile load = trs::sim::Load::Profile::steady;
    unsigned units = 0; // 0: one, in this process
};

void addOptions(trs::tools::CommandLine& line, Options& options)
{
    line.add({.name = "--listen",
              .target = &options.endpoints,
              .help = "Where to serve: unix:PATH, tcp:HOST:PORT or tcp:PORT; may be given several times (default: " +
                      std::string(trs::tools::CommandLine::defaultEndpointText) + ")",
              .type = "ENDPOINT",
              .check = trs::tools::CommandLine::checkEndpoint});
    line.add({.name = "--address",
              .target = &options.address,
              .help = "The public address at the start",
              .type = "ADDRESS"});
    line.add({.name = "--scenario",
              .target = &options.scenario,
              .help = "What the unit holds at the start, as --save writes it",
              .type = "FILE"});
    line.add({.name = "--save",
              .target = &options.save,
              .help = "Where to write what the unit holds at the end",
              .type = "FILE"});
    line.add({.name = "--state",
              .target = &options.state,
              .help =
                  "A database that holds the unit over restarts: made if it is not there, and has each change before "
                  "its answer goes out",
              .type = "FILE"});
    line.add({.name = "--log-calls",
              .target = &options.callLog,
              .help = "Where to log the calls, a JSON object a line",
              .type = "FILE"});
    line.add({.name = "--seed",
              .target = &options.seed,
              .help = "What decides numbers that are left to chance, whatever the scenario says",
              .type = "N"});
    line.add(trs::tools::choice<TimeSource>("--clock", "real, or stepped: time passes only by the command tick",
                                            {{"real", TimeSource::real}, {"stepped", TimeSource::stepped}},
                                            [&options](TimeSource chosen) { options.timeSource = chosen; }));
    using Profile = trs::sim::Load::Profile;
    line.add(trs::tools::choice<Profile>("--load",
                                         "How busy the network is, which counters follow: steady, quiet, busy-hour (a "
                                         "day's curve) or noise",
                                         {{"steady", Profile::steady},
                                          {"quiet", Profile::quiet},
                                          {"busy-hour", Profile::busyHour},
                                          {"noise", Profile::noise}},
                                         [&options](Profile chosen) { options.load = chosen; }));
    line.add({.name = "--units",
              .target = &options.units,
              .help = "How many units to run, each in a process of its own: endpoints and files get -1, -2, ... "
                      "appended, ports and seeds count up",
              .type = "N",
              .range = {{1, mostUnits}}});
    line.add({.name = "--do",
              .target = &options.commands,
              .help = "A command to execute at the start; may be given several times",
              .type = "COMMAND"});
}

// Has the unit's time pass as the real one does, in whole seconds.
void follow(trs::tools::Console& console, trs::sim::Unit& unit)
{
    using Clock = std::chrono::steady_clock;
    console.every(std::chrono::seconds(1), [&unit, last = Clock::now()]() mutable {
        auto const passed = std::chrono::floor<std::chrono::seconds>(Clock::now() - last);
        last += passed;
        if (passed.count() > 0) {
            unit.advance(static_cast<unsigned long>(passed.count()));
            unit.keep();
        }
    });
}

// Brings the unit into the state that it begins in. Empty, or what is wrong.
std::string prepare(trs::sim::Unit& unit, trs::tools::Console& console, Options const& options)
{
    bool isNew = true;
    if (!options.state.empty()) {
        TreflectHandlerState const running;
        if (std::string const wrong = unit.holdIn(options.state, isNew); !wrong.empty()) {
            return "--state: " + wrong;
        }
        trs::tools::say((isNew ? "a new unit is held in '" : "the unit goes on as held in '") +
                        trs::escaped(options.state) + '\'');
    }
    if (!options.scenario.empty() && isNew) {
        TreflectHandlerState const running;
        if (std::string const wrong = trs::sim::scenario::load(unit, options.scenario); !wrong.empty()) {
            return "--scenario: " + wrong;
        }
        if (options.seed != 0) {
            unit.setSeed(options.seed);
        }
    }
    if (!unit.keep()) {
        return "--state: the unit cannot be kept";
    }
    for (std::string const& command : options.commands) {
        if (std::string const wrong = console.execute(command); !wrong.empty()) {
            return "--do: " + wrong;
        }
    }
    return {};
}

// Empty, or why the unit cannot be served.
std::string serve(trs::sim::Unit& unit, Options const& options)
{
    if (!options.callLog.empty()) {
        if (std::string why = unit.logCalls(options.callLog); !why.empty()) {
            return why;
        }
    }
    for (std::string const& endpoint : options.endpoints) {
        if (std::string why = unit.serve(endpoint); !why.empty()) {
            return why;
        }
    }
    for (std::string const& endpoint : trs::Broker::instance().endpoints()) {
        trs::tools::say("ready on " + endpoint);
    }
    return {};
}

int run(trs::sim::Unit& unit, Options const& options, bool endsWithInput)
{
    trs::sim::setJournal(trs::tools::say);
    trs::tools::Console console("stop");
    trs::sim::addCommands(console, unit);
    if (std::string const wrong = prepare(unit, console, options); !wrong.empty()) {
        std::fputs(trs::tools::complaintText(wrong).c_str(), stderr);
        return trs::tools::CommandLine::wrongUsage;
    }
    if (std::string const why = serve(unit, options); !why.empty()) {
        std::fputs(trs::tools::complaintText(why).c_str(), stderr);
        return cannotServe;
    }
    if (options.timeSource == TimeSource::real) {
        follow(console, unit);
    }
    console.run(endsWithInput);
    trs::Broker::setDeadline(endTime); // a client that does not take its answer is not waited for
    if (!options.save.empty()) {
        TreflectHandlerState const running;
        if (std::string const why = trs::sim::scenario::store(unit, options.save); !why.empty()) {
            std::fprintf(stderr, "--save: %s\n", why.c_str());
            return cannotServe;
        }
    }
    return unit.hasLoggedAllCalls() ? 0 : hasLostOutput;
}

// The options of one unit of several.
Options optionsOf(trs::sim::UnitNumber unit, Options options)
{
    for (std::string& endpoint : options.endpoints) {
        endpoint = unit.endpoint(endpoint);
    }
    options.save = unit.file(options.save);
    options.state = unit.file(options.state);
    options.callLog = unit.file(options.callLog);
    options.seed += unit.number == 0 ? 0 : unit.number - 1;
    return options;
}

int runUnits(int argc, char** argv)
{
    Options options;
    trs::tools::CommandLine line("trssim", description, 4);
    addOptions(line, options);
    line.takeCommands();
    if (std::optional<int> const code = line.parse(argc, argv)) {
        return *code;
    }
    if (options.endpoints.empty()) {
        options.endpoints.push_back(trs::tools::CommandLine::defaultEndpoint());
    }
    // Made once, so that the processes of several units share the memory of all that does not change.
    trs::sim::Unit unit({options.address, options.seed, options.timeSource == TimeSource::real, options.load});
    if (options.units == 0) {
        return run(unit, options, line.exitsOnEof());
    }
    int exitCode = 0;
    trs::sim::UnitNumber const number = trs::sim::Fleet::begin(options.units, line.exitsOnEof(), exitCode);
    if (number.number == 0) {
        return exitCode;
    }
    Options const own = optionsOf(number, options);
    unit.setSeed(own.seed);
    return run(unit, own, false);
}

} // namespace

int main(int argc, char** argv)
{
    return trs::tools::runProgram([&] { return runUnits(argc, argv); });
}
