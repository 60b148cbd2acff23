// trsctl snapshot and diff: all that a unit tells, and what two of them tell differently.
#include "broker/Broker.h"
#include "broker/PrintableText.h"
#include "catalogue/ConstantNames.h"
#include "catalogue/File.h"
#include "catalogue/Json.h"
#include "catalogue/ValueText.h"
#include "catalogue/Walk.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/support/Colour.h"
#include "tools/support/Console.h"
#include "tools/support/Progress.h"
#include "tools/trsctl/Program.h"
#include "tools/trsctl/Verbs.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fnmatch.h>
#include <map>
#include <memory>

namespace trs::ctl {

namespace {

using catalogue::Outcome;
using catalogue::Value;

// What all objects tell that walks come to.
class Collector {
public:
    explicit Collector(Unit const& unit) : unit_(unit) {}

    // Adds all that is reached from the object. What is wrong is said.
    ExitCode add(std::string const& object)
    {
        Unit::Target target;
        if (ExitCode const code = unit_.connect(object, target); code != ExitCode::good) {
            return code;
        }
        TreflectHandlerState const running;
        walk_.begin(target.name);
        tools::Progress progress("objects");
        ExitCode end = ExitCode::good;
        catalogue::makeCalls(walk_, [&](catalogue::Visit const& visit) {
            if (isUnitLost(visit.outcome)) {
                progress.clear();
                end = unit_.complain({visit.object.name, visit.object.type, {}}, visit.operation, visit.outcome);
                return false;
            }
            told_[visit.object.name.id][std::string(visit.operation.name)] = whatItTold(visit);
            progress.show(told_.size(), walk_.objects().size());
            return true;
        });
        return end;
    }

    // In a stable order.
    Value document()
    {
        std::map<std::string, Value> objects;
        for (catalogue::Walk::Object const& object : walk_.objects()) {
            if (object.type != nullptr) {
                Value& told = told_[object.name.id];
                objects[object.name.text()] = told.is_null() ? Value::object() : std::move(told);
            }
        }
        Value all = Value::object();
        for (auto& [name, told] : objects) {
            all[name] = std::move(told);
        }
        return {{"objects", std::move(all)}};
    }

private:
    static Value whatItTold(catalogue::Visit const& visit)
    {
        if (visit.outcome.kind != Outcome::Kind::done) {
            return {{"error", Unit::describe(visit.operation, visit.outcome)}};
        }
        catalogue::nameConstants(visit.operation, visit.outcome.results);
        return std::move(visit.outcome.results);
    }

    Unit const& unit_;
    catalogue::Walk walk_;
    std::map<std::string, Value> told_; // by identifier
};

// The unit as a document. Without an object: all that its well-known ones lead to.
ExitCode take(Unit const& unit, std::string const& object, Value& document)
{
    Collector collector(unit);
    if (!object.empty()) {
        ExitCode const code = collector.add(object);
        document = collector.document();
        return code;
    }
    for (char const* const root : {"IpNode", "NmiRmiAdapterServer"}) {
        if (ExitCode const code = collector.add(root); code != ExitCode::good) {
            return code;
        }
    }
    document = collector.document();
    return ExitCode::good;
}

ExitCode complainOfFile(std::string const& why)
{
    std::fprintf(stderr, "%s\n", why.c_str());
    return ExitCode::usage;
}

ExitCode write(std::string const& file, Value const& document)
{
    std::error_code const error = catalogue::writeWholeFile(file, catalogue::toJson(document) + '\n');
    if (!error) {
        return ExitCode::good;
    }
    complainOfFile(catalogue::whyNotWritten(file, error));
    return catalogue::isFull(error) ? ExitCode::outputLost : ExitCode::usage;
}

ExitCode snapshot(Unit const& unit, std::string const& object, std::string const& file)
{
    Value document;
    if (ExitCode const code = take(unit, object, document); code != ExitCode::good) {
        return code;
    }
    if (file.empty()) {
        tools::say(catalogue::toJson(document));
        return ExitCode::good;
    }
    return write(file, document);
}

bool isEndpoint(std::string const& source) { return source.starts_with("unix:") || source.starts_with("tcp:"); }

// A side of a comparison: an endpoint, a file, or standard input as "-".
ExitCode load(Program::Options options, std::string const& source, Value& document)
{
    if (isEndpoint(source)) {
        options.unit = source;
        ExitCode const code = take(options.unitOf(), "", document);
        Broker::instance().removePeers(); // the other side is another unit
        return code;
    }
    std::string text;
    std::string const why = source == "-" ? catalogue::readStandardInput(text) : catalogue::readWholeFile(source, text);
    if (!why.empty()) {
        return complainOfFile(why);
    }
    std::string wrong = catalogue::parseJson(text, document);
    if (wrong.empty()) {
        bool const isSnapshot = document.is_object() && document.contains("objects") && document["objects"].is_object();
        wrong = isSnapshot ? "" : "no snapshot";
    }
    return wrong.empty() ? ExitCode::good : complainOfFile('\'' + printable(source) + "' is " + wrong);
}

std::string placeOf(std::string place, std::string const& path)
{
    (place += ' ') += path;
    return place;
}

// The leaves of a document by "object operation.path"; null for the object itself.
using Leaves = std::map<std::string, Value const*>;

Leaves leavesOf(Value const& document)
{
    Leaves leaves;
    for (auto const& [object, told] : document["objects"].items()) {
        leaves[object] = nullptr;
        catalogue::forEachLeaf(told, [&, &name = object](std::string const& path, Value const& leaf) {
            leaves[placeOf(name, path)] = &leaf;
        });
    }
    return leaves;
}

bool isSame(Value const* one, Value const* other)
{
    return one == nullptr || other == nullptr ? one == other : *one == *other;
}

std::string after(char const* separator, Value const* leaf)
{
    return leaf != nullptr ? separator + escaped(catalogue::textOf(*leaf)) : std::string();
}

class Differences {
public:
    Differences(std::vector<std::string> const& ignored, Format format) : ignored_(ignored), format_(format) {}

    // Shows a place. `sign`: - only before, + only now, ~ another leaf.
    void add(char sign, std::string const& place, Value const* before, Value const* now)
    {
        if (std::ranges::any_of(ignored_, [&place](std::string const& pattern) {
                return ::fnmatch(pattern.c_str(), place.c_str(), 0) == 0;
            })) {
            return;
        }
        isEmpty_ = false;
        if (format_ == Format::json) {
            Value line{{"change", sign == '~' ? "changed" : sign == '+' ? "added" : "removed"}, {"place", place}};
            if (before != nullptr) {
                line["before"] = *before;
            }
            if (now != nullptr) {
                line["after"] = *now;
            }
            tools::say(catalogue::toJson(line, -1));
            return;
        }
        std::string const line =
            sign + (' ' + escaped(place)) + after(" ", before) + after(sign == '~' ? " -> " : " ", now);
        tools::say(sign == '~' ? line : tools::coloured(line, sign == '+' ? tools::Colour::good : tools::Colour::bad));
    }
    bool areNone() const { return isEmpty_; }

private:
    std::vector<std::string> const& ignored_;
    Format const format_;
    bool isEmpty_ = true;
};

ExitCode diff(Program::Options const& options, std::vector<std::string> const& sides,
              std::vector<std::string> const& ignored)
{
    std::array<Value, 2> documents;
    for (std::size_t i = 0; i < documents.size(); ++i) {
        if (ExitCode const code = load(options, sides[i], documents[i]); code != ExitCode::good) {
            return code;
        }
    }
    if (isEndpoint(sides[0]) != isEndpoint(sides[1])) {
        // A snapshot has what is no UTF-8 replaced, and so must have what it is compared with.
        Value& live = documents[isEndpoint(sides[0]) ? 0 : 1];
        catalogue::parseJson(catalogue::toJson(live, -1), live);
    }
    Leaves const before = leavesOf(documents[0]);
    Leaves const now = leavesOf(documents[1]);
    Differences differences(ignored, options.format);
    for (auto const& [place, leaf] : before) {
        auto const found = now.find(place);
        if (found == now.end()) {
            differences.add('-', place, leaf, nullptr);
        } else if (!isSame(leaf, found->second)) {
            differences.add('~', place, leaf, found->second);
        }
    }
    for (auto const& [place, leaf] : now) {
        if (!before.contains(place)) {
            differences.add('+', place, nullptr, leaf);
        }
    }
    return differences.areNone() ? ExitCode::good : ExitCode::different;
}

} // namespace

void addSnapshotVerbs(Program& program)
{
    struct Taken {
        std::string object;
        std::string file;
    };
    auto const taken = std::make_shared<Taken>();
    tools::Option object = Program::objectArgument(taken->object, false);
    object.help = "Where to begin: Class:identifier, or a well-known identifier; else all well-known ones";
    program.add(
        {.name = "snapshot",
         .help = "Write all that a unit's objects tell",
         .example = "snapshot -o before.json",
         .options =
             {
                 std::move(object),
                 {.name = "-o,--output",
                  .target = &taken->file,
                  .help = "Where to write, as a whole or not at all; else standard output",
                  .type = "FILE"},
             }},
        [taken](Program::Options const& options) { return snapshot(options.unitOf(), taken->object, taken->file); });

    struct Compared {
        std::vector<std::string> sides;
        std::vector<std::string> ignored;
    };
    auto const compared = std::make_shared<Compared>();
    program.add(
        {.name = "diff",
         .help = "Show what two units or snapshots tell differently",
         .example = "diff before.json unix:/tmp/trssim.sock",
         .options =
             {
                 {.name = "SIDE",
                  .target = &compared->sides,
                  .help = "A snapshot's file, an endpoint, or - for standard input",
                  .isRequired = true,
                  .count = 2},
                 {.name = "--ignore",
                  .target = &compared->ignored,
                  .help = "Places to leave out, as the output has them, with * and ?; may be given several times",
                  .type = "PATTERN"},
             }},
        [compared](Program::Options const& options) { return diff(options, compared->sides, compared->ignored); });
}

} // namespace trs::ctl
