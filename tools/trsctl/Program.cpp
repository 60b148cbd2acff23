#include "tools/trsctl/Program.h"

#include "tools/trsctl/Verbs.h"

#include <map>

namespace {

constexpr char const* description =
    "Shows what interfaces a unit's objects have, reads and sets what they keep, and calls any of their operations.\n"
    "An OBJECT is Class:identifier, or a well-known identifier alone: IpNode, NmiRmiAdapterServer.";

constexpr char const* exitCodes =
    "Exit codes: 0 done, 1 a difference was found, 2 wrong usage, 3 no such object, 4 refused by the unit, 5 no reply "
    "in time,\n6 unit not reached or lost, 7 malformed reply, 8 no such operation there.";

constexpr int longestTimeout = 600000;

void addOptions(CLI::App& app, Program::Options& options)
{
    static std::map<std::string, Format> const formats{
        {"text", Format::text}, {"json", Format::json}, {"table", Format::table}};
    app.add_option("--unit", options.unit,
                   "Where the unit serves (default: " + std::string(tools::CommandLine::defaultEndpointText) + ")")
        ->envname("TRS_UNIT")
        ->type_name("ENDPOINT")
        ->check(CLI::Validator(tools::CommandLine::checkEndpoint, ""));
    app.add_option("--timeout", options.timeout, "How long a call may take, in milliseconds")
        ->type_name("MS")
        ->capture_default_str()
        ->check(CLI::Range(1, longestTimeout).description(""));
    app.add_option("--wait", options.wait, "How long to wait for the object to be there, in seconds")
        ->type_name("S")
        ->check(CLI::Range(0.0, 3600.0).description(""));
    app.add_option("--format", options.format, "How results are written")
        ->type_name("text|json|table")
        ->transform(CLI::CheckedTransformer(formats).description(""));
    app.footer(exitCodes);
    app.require_subcommand(1);
}

// CLI11 takes a word in brackets for a list of its own, whose brackets it drops. A JSON array stays a word with a blank
// behind it, which is taken away again.
void guard(std::string& word) { word += word.starts_with('[') ? " " : ""; }

std::string unguard(std::string& word)
{
    if (word.starts_with('[')) {
        word.pop_back();
    }
    return {};
}

} // namespace

Unit Program::Options::unitOf() const
{
    return Unit(
        {unit, std::chrono::milliseconds(timeout), std::chrono::milliseconds(static_cast<long>(wait * 1000)), format});
}

Program::Program(Options defaults) : options_(std::move(defaults)), line_("trsctl", description, 0)
{
    addOptions(line_.options(), options_);
    addOfflineVerbs(*this);
    addCallVerbs(*this);
    addTreeVerb(*this);
    addNotificationVerbs(*this);
    addSnapshotVerbs(*this);
    addBenchVerb(*this);
    addBatchVerb(*this);
    addCompletionVerbs(*this);
    line_.addCommonOptions();
}

CLI::App& Program::add(std::string const& name, std::string const& help, std::string const& example, Verb verb)
{
    CLI::App& added = *line_.options().add_subcommand(name, help);
    added.footer("Example: trsctl " + example);
    added.fallthrough(); // the program's own options may also follow
    added.final_callback([this, verb = std::move(verb)] { verb_ = verb; });
    return added;
}

CLI::Option* Program::addObject(CLI::App& verb, std::string& object)
{
    return verb.add_option("OBJECT", object, "Class:identifier, or a well-known identifier");
}

CLI::Option* Program::addValues(CLI::App& verb, std::vector<std::string>& values)
{
    return verb
        .add_option("VALUE", values, "NAME=VALUE, or VALUE in the order of the signature; JSON or @FILE for records")
        ->transform(CLI::Validator(unguard, ""));
}

int Program::run(std::vector<std::string> words)
{
    std::vector<char const*> pointers{"trsctl"};
    pointers.reserve(words.size() + 1);
    for (std::string& word : words) {
        guard(word);
        pointers.push_back(word.c_str());
    }
    if (std::optional<int> const code = line_.parse(static_cast<int>(pointers.size()), pointers.data())) {
        return *code;
    }
    return static_cast<int>(verb_(options_));
}
