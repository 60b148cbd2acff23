// The verbs of trsctl and the options they share.
#pragma once

#include "tools/support/Colour.h"
#include "tools/support/CommandLine.h"
#include "tools/trsctl/ExitCode.h"
#include "tools/trsctl/Output.h"
#include "tools/trsctl/Units.h"

#include <functional>
#include <string>
#include <vector>

namespace trs::ctl {

// One command line: made, told its verbs, and run once.
class Program {
public:
    // $TRS_UNIT, else where a simulated unit serves unless told.
    static std::string usualUnit();
    // What the options that all verbs share say.
    struct Options {
        std::string unit = usualUnit();      // where it serves, or its name
        std::vector<std::string> units = {}; // several instead, as --unit names them
        std::string selector = {};           // and those that have these labels
        int timeout = 5000;                  // of a call, in milliseconds
        double wait = 0;                     // for the unit to be up, in seconds
        Format format = Format::text;
        tools::UseOfColour colour = tools::UseOfColour::whereItIsSeen;
        View view = {};
    };
    using Action = std::function<ExitCode(Options const&)>;

    // With all verbs. The options are as given until the command line says otherwise.
    explicit Program(Options defaults);
    Program(Program const&) = delete;
    Program& operator=(Program const&) = delete;

    // Adds a verb, and what to do when it is chosen. On several units it is run on each, which `atOnce` is told of and
    // sees to itself; `one` refuses. `none` asks no unit, or several as its own words say.
    enum class Units { each, atOnce, one, none };
    void add(tools::Verb verb, Action action, Units units = Units::each);
    tools::OptionTable const& table() { return line_.table(); }
    Options const& shared() const { return options_; }

    // The words of a command line that say what the options do, but for what they are unless told.
    static std::vector<std::string> wordsOf(Options const& options);

    // Runs the verb that the words, without the program's name, ask for. Its exit code.
    int run(std::vector<std::string> const& words);

    // An object as a verb takes it.
    static tools::Option objectArgument(std::string& object, bool isRequired = true);
    // Any number of values as they are, also JSON arrays.
    static tools::Option valuesArgument(std::vector<std::string>& values);

private:
    int runVerb(std::vector<std::string> const& words, bool isJson);
    int act();
    ExitCode runOnSeveral(std::vector<NamedUnit> const& units, std::vector<std::string> const& words);
    tools::Verb const& verb() const;

    Options options_;
    std::vector<std::string> units_; // as the command line names them
    std::string selector_;
    Action action_;
    std::string verb_;
    Units asked_ = Units::each;
    tools::CommandLine line_;
};

} // namespace trs::ctl
