#include "bench/support/Program.h"

#include "bench/support/BrokerSide.h"
#include "bench/support/Figures.h"
#include "bench/support/Processes.h"
#include "bench/support/RawSockets.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <map>

namespace {

int measureOne(bench::Work const& work, bench::Place place)
{
    std::string pattern = (std::filesystem::temp_directory_path() / "bench.XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        std::perror("no directory for sockets");
        return 1;
    }
    place.directory = pattern;
    work.measure(place);
    std::filesystem::remove_all(pattern);
    return 0;
}

} // namespace

int bench::run(int argc, char** argv, std::string const& description, Effort effort, std::vector<Work> const& works,
               bool hasCount)
{
    CLI::App app(description);
    Place place;
    std::vector<std::string> only;
    std::map<std::string, Work const*> byName;
    for (Work const& work : works) {
        byName.emplace(work.name, &work);
    }
    app.add_option("--rounds", effort.rounds, "Rounds of each")->check(CLI::PositiveNumber)->capture_default_str();
    app.add_option("--seconds", effort.seconds, "Length of a round")->check(CLI::PositiveNumber)->capture_default_str();
    app.add_option("--only", only, "Only these works")->check(CLI::IsMember(byName));
    app.add_option("--count", place.count, "How many there are, in place of the usual number")
        ->check(CLI::NonNegativeNumber)
        ->group(hasCount ? "Options" : "");

    // What this program is to itself.
    std::string name;
    std::vector<std::string> endpoints;
    bool isBusy = false;
    bool isTable = false;
    CLI::App* const one = app.add_subcommand("measure", "One work, without heading")->group("");
    one->add_option("work", name)->required();
    CLI::App* const raw = app.add_subcommand("serve-raw")->group("");
    raw->add_flag("--yielding,!--blocked", isBusy);
    raw->add_flag("--table,!--number", isTable);
    raw->add_option("endpoint", endpoints)->required();
    CLI::App* const ours = app.add_subcommand("serve")->group("");
    ours->add_flag("--busy,!--sleeping", isBusy);
    ours->add_option("endpoints", endpoints)->required();
    CLI::App* const holding = app.add_subcommand("hold")->group("");
    holding->add_option("count", place.count)->required();
    holding->add_option("endpoint", endpoints)->required();
    CLI11_PARSE(app, argc, argv);

    allowManyDescriptors();
    if (*raw) {
        raw::serve(endpoints.front(), isBusy ? raw::Waiting::yielding : raw::Waiting::blocked,
                   isTable ? raw::Reply::table : raw::Reply::number);
    }
    if (*ours) {
        ours::serve(endpoints, isBusy);
    }
    if (*holding) {
        ours::hold(endpoints.front(), place.count);
    }
    place.effort = effort;
    if (*one) {
        return measureOne(*byName.at(name), place);
    }

    std::printf("best of %d rounds of %g s each, %d processors\n", effort.rounds, effort.seconds, processors());
    printHeading();
    int failures = 0;
    for (Work const& work : works) {
        if (only.empty() || std::find(only.begin(), only.end(), work.name) != only.end()) {
            failures +=
                runAgain({"--rounds", std::to_string(effort.rounds), "--seconds", std::to_string(effort.seconds),
                          "--count", std::to_string(place.count), "measure", work.name}) != 0
                    ? 1
                    : 0;
        }
    }
    return failures == 0 ? 0 : 1;
}

std::vector<std::string> bench::rawServer(std::string const& endpoint, bool isYielding, bool isTable)
{
    return {"serve-raw", isYielding ? "--yielding" : "--blocked", isTable ? "--table" : "--number", endpoint};
}

std::vector<std::string> bench::ourServer(std::vector<std::string> const& endpoints, bool isBusy)
{
    std::vector<std::string> arguments{"serve", isBusy ? "--busy" : "--sleeping"};
    arguments.insert(arguments.end(), endpoints.begin(), endpoints.end());
    return arguments;
}

std::vector<std::string> bench::holder(std::string const& endpoint, int count)
{
    return {"hold", std::to_string(count), endpoint};
}
