// trsctl snapshot and diff: all that a unit tells, and what two of them tell differently.
#include "broker/Broker.h"
#include "broker/PrintableText.h"
#include "catalogue/Constants.h"
#include "catalogue/File.h"
#include "catalogue/Json.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/support/Colour.h"
#include "tools/support/Console.h"
#include "tools/support/Progress.h"
#include "tools/trsctl/Program.h"
#include "tools/trsctl/References.h"
#include "tools/trsctl/Verbs.h"

#include <cstdio>
#include <deque>
#include <fnmatch.h>
#include <map>
#include <memory>
#include <set>

namespace trs::ctl {

namespace {

using catalogue::ObjectName;
using catalogue::Outcome;
using catalogue::Value;

constexpr std::size_t mostObjects = 10'000; // a unit that makes up objects without end comes to one

// Takes the objects one after the other, those that they lead to included.
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
        await(target.name.text());
        tools::Progress progress("objects");
        while (!waiting_.empty()) {
            std::string const next = waiting_.front();
            waiting_.pop_front();
            ObjectName name;
            ObjectName::parse(next, name);
            target = {name, catalogue::findClass(name.className), TipprmiObjectClient(TipprmiOID(name.id))};
            if (target.type != nullptr) {
                if (ExitCode const code = read(target, objects_[next], progress); code != ExitCode::good) {
                    return code;
                }
            }
            progress.show(objects_.size(), objects_.size() + waiting_.size());
        }
        return ExitCode::good;
    }

    // In a stable order.
    Value document() const
    {
        Value objects = Value::object();
        for (auto const& [name, told] : objects_) {
            objects[name] = told;
        }
        return {{"objects", objects}};
    }

private:
    // An object may be met as one of its own class and of a base: the first one counts.
    void await(std::string const& object)
    {
        if (seen_.size() < mostObjects && seen_.insert(object.substr(object.find(':') + 1)).second) {
            waiting_.push_back(object);
        }
    }

    ExitCode read(Unit::Target const& target, Value& told, tools::Progress& progress)
    {
        told = Value::object();
        for (catalogue::Operation const* const operation : target.type->operations()) {
            if (!operation->isReading()) {
                continue;
            }
            Outcome outcome = catalogue::call(target.object, *operation, {});
            std::string const name(operation->name);
            if (outcome.kind == Outcome::Kind::done) {
                for (std::string const& object : referencesIn(*operation, outcome.results)) {
                    await(object);
                }
                catalogue::nameConstants(*operation, outcome.results);
                told[name] = outcome.results;
                continue;
            }
            ExitCode const code = exitCodeOf(outcome.failure);
            if (outcome.kind == Outcome::Kind::failed &&
                (code == ExitCode::unreachable || code == ExitCode::deadline)) {
                progress.clear();
                return unit_.complain(target, *operation, outcome);
            }
            told[name] = {{"error", Unit::describe(*operation, outcome)}};
        }
        return ExitCode::good;
    }

    Unit const& unit_;
    std::map<std::string, Value> objects_;
    std::set<std::string> seen_; // identifiers
    std::deque<std::string> waiting_;
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

// A side of a comparison: an endpoint, a file, or standard input as "-".
ExitCode load(Program::Options options, std::string const& source, Value& document)
{
    if (source.starts_with("unix:") || source.starts_with("tcp:")) {
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

// By "object operation.path".
std::map<std::string, std::string> leavesOf(Value const& document)
{
    std::map<std::string, std::string> leaves;
    for (auto const& [object, told] : document["objects"].items()) {
        leaves[object];
        catalogue::forEachLeaf(told, [&, &name = object](std::string const& path, std::string const& text) {
            leaves[placeOf(name, path)] = text;
        });
    }
    return leaves;
}

struct Differences {
    std::vector<std::string> const& ignored;
    Format format;
    std::size_t count = 0;

    // `sign`: - only before, + only after, ~ another value.
    void add(char sign, std::string const& place, std::string const& before, std::string const& after)
    {
        for (std::string const& pattern : ignored) {
            if (::fnmatch(pattern.c_str(), place.c_str(), 0) == 0) {
                return;
            }
        }
        ++count;
        if (format == Format::json) {
            tools::say(catalogue::toJson({{"change", sign == '~'   ? "changed"
                                                     : sign == '+' ? "added"
                                                                   : "removed"},
                                          {"place", place},
                                          {"before", before},
                                          {"after", after}},
                                         -1));
            return;
        }
        std::string const values = sign == '~' ? before + " -> " + after : sign == '+' ? after : before;
        std::string const line =
            std::string(1, sign) + ' ' + printable(place) + (values.empty() ? "" : ' ' + printable(values));
        tools::say(sign == '~' ? line : tools::coloured(line, sign == '+' ? tools::Colour::good : tools::Colour::bad));
    }
};

ExitCode diff(Program::Options const& options, std::vector<std::string> const& sides,
              std::vector<std::string> const& ignored)
{
    Value before;
    Value after;
    if (ExitCode const code = load(options, sides[0], before); code != ExitCode::good) {
        return code;
    }
    if (ExitCode const code = load(options, sides[1], after); code != ExitCode::good) {
        return code;
    }
    Differences differences{ignored, options.format};
    std::map<std::string, std::string> const old = leavesOf(before);
    std::map<std::string, std::string> const now = leavesOf(after);
    for (auto const& [place, text] : old) {
        auto const found = now.find(place);
        if (found == now.end()) {
            differences.add('-', place, text, "");
        } else if (found->second != text) {
            differences.add('~', place, text, found->second);
        }
    }
    for (auto const& [place, text] : now) {
        if (!old.contains(place)) {
            differences.add('+', place, "", text);
        }
    }
    return differences.count == 0 ? ExitCode::good : ExitCode::different;
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
