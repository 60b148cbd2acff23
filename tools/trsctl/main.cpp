// trsctl: hands and eyes for a unit's objects.
#include "tools/support/CommandLine.h"
#include "tools/trsctl/Offline.h"
#include "tools/trsctl/Unit.h"

#include <functional>
#include <map>

namespace {

constexpr char const* description =
    "Shows what interfaces a unit's objects have, reads and sets what they keep, and calls any of their operations.\n"
    "An OBJECT is Class:identifier, or a well-known identifier alone: IpNode, NmiRmiAdapterServer.";

constexpr char const* exitCodes =
    "Exit codes: 0 done, 2 wrong usage, 3 no such object, 4 refused by the unit, 5 no reply "
    "in time,\n6 unit not reached or lost, 7 malformed reply, 8 no such operation there.";

constexpr int longestTimeout = 600000;

struct Options {
    std::string unit = tools::CommandLine::defaultEndpoint();
    int timeout = 5000;
    double wait = 0;
    Format format = Format::text;

    std::string name; // a class or an operation
    std::string object;
    std::vector<std::string> arguments;
    int depth = 8;
    bool isDot = false;
};

using Verb = std::function<ExitCode(Options const&)>;

Unit unitOf(Options const& options)
{
    return Unit({options.unit, std::chrono::milliseconds(options.timeout),
                 std::chrono::milliseconds(static_cast<long>(options.wait * 1000)), options.format});
}

void addVerbs(CLI::App& program, Options& options, Verb& verb)
{
    auto const add = [&](char const* name, char const* help, char const* example, Verb action) -> CLI::App& {
        CLI::App& added = *program.add_subcommand(name, help);
        added.footer(std::string("Example: trsctl ") + example);
        added.fallthrough(); // the program's own options may also follow
        added.final_callback([&verb, action = std::move(action)] { verb = action; });
        return added;
    };
    auto const object = [&options](CLI::App& app) {
        return app.add_option("OBJECT", options.object, "Class:identifier, or a well-known identifier");
    };

    add("list", "List the classes, or the operations of one", "list EthIfNet", [](Options const& o) {
        return list(o.name, o.format);
    }).add_option("CLASS", options.name, "With or without Client");
    add("describe", "Describe a class or an operation", "describe IfNet.getMtu",
        [](Options const& o) { return describe(o.name, o.format); })
        .add_option("CLASS[.OPERATION]", options.name, "The class by name or identifier, 0xb86aeff7")
        ->required();

    CLI::App& get = add("get", "Read something of an object", "get IpNode mtu",
                        [](Options const& o) { return unitOf(o).get(o.object, o.name, o.arguments); });
    CLI::App& set = add("set", "Set something of an object", "set IpNode mtu 1400",
                        [](Options const& o) { return unitOf(o).set(o.object, o.name, o.arguments); });
    CLI::App& call = add("call", "Call any operation", "call IpNode getIpConfig name=btsIpPrimary",
                         [](Options const& o) { return unitOf(o).call(o.object, o.name, o.arguments); });
    for (CLI::App* const app : {&get, &set, &call}) {
        object(*app)->required();
        app->add_option(app == &call ? "OPERATION" : "NAME", options.name,
                        app == &call ? "The operation's name" : "What is read or set, or the operation's name")
            ->required();
        app->add_option("VALUE", options.arguments,
                        "NAME=VALUE, or VALUE in the order of the signature; JSON or @FILE for records");
    }
    object(add("walk", "Read all that an object tells", "walk EthIfNet:IfNet/Transport", [](Options const& o) {
        return unitOf(o).walk(o.object);
    }))->required();

    CLI::App& tree = add("tree", "Show what objects lead to", "tree --depth 2", [](Options const& o) {
        return unitOf(o).tree(o.object.empty() ? "IpNode" : o.object, o.depth, o.isDot);
    });
    object(tree);
    tree.add_option("--depth", options.depth, "How many steps to go")
        ->type_name("N")
        ->capture_default_str()
        ->check(CLI::Range(0, 100).description(""));
    tree.add_flag("--dot", options.isDot, "As a graph for Graphviz");
}

// CLI11 takes a word in brackets for a list of its own, whose brackets it drops. A JSON array stays a word with a blank
// behind it, which is taken away again.
std::vector<std::string> guarded(int argc, char const* const* argv)
{
    std::vector<std::string> words(argv, argv + argc);
    for (std::string& word : words) {
        word += word.starts_with('[') ? " " : "";
    }
    return words;
}

void unguard(std::vector<std::string>& words)
{
    for (std::string& word : words) {
        if (word.starts_with('[')) {
            word.pop_back();
        }
    }
}

void addOptions(CLI::App& program, Options& options)
{
    static std::map<std::string, Format> const formats{
        {"text", Format::text}, {"json", Format::json}, {"table", Format::table}};
    program.add_option("--unit", options.unit, "Where the unit serves (default: " + options.unit + ")")
        ->envname("TRS_UNIT")
        ->type_name("ENDPOINT")
        ->check(CLI::Validator(tools::CommandLine::checkEndpoint, ""));
    program.add_option("--timeout", options.timeout, "How long a call may take, in milliseconds")
        ->type_name("MS")
        ->capture_default_str()
        ->check(CLI::Range(1, longestTimeout).description(""));
    program.add_option("--wait", options.wait, "How long to wait for the object to be there, in seconds")
        ->type_name("S")
        ->check(CLI::Range(0.0, 3600.0).description(""));
    program.add_option("--format", options.format, "text, json or table")
        ->type_name("FORMAT")
        ->transform(CLI::CheckedTransformer(formats).description(""));
    program.footer(exitCodes);
    program.require_subcommand(1);
}

} // namespace

// CLI11 throws when the options of a program contradict each other, which would be a fault of this file.
int main(int argc, char** argv) // NOLINT(bugprone-exception-escape)
{
    Options options;
    Verb verb;
    tools::CommandLine line("trsctl", description, 0);
    addOptions(line.options(), options);
    addVerbs(line.options(), options, verb);
    std::vector<std::string> const words = guarded(argc, argv);
    std::vector<char const*> pointers;
    pointers.reserve(words.size());
    for (std::string const& word : words) {
        pointers.push_back(word.c_str());
    }
    if (std::optional<int> const code = line.parse(argc, pointers.data())) {
        return *code;
    }
    unguard(options.arguments);
    return static_cast<int>(verb(options));
}
