// trsctl diff: what two units or snapshots tell differently.
#include "broker/Broker.h"
#include "broker/PrintableText.h"
#include "catalogue/File.h"
#include "catalogue/Json.h"
#include "catalogue/ValueText.h"
#include "tools/support/Colour.h"
#include "tools/support/StandardStreams.h"
#include "tools/trsctl/Complaint.h"
#include "tools/trsctl/UnitDocument.h"
#include "tools/trsctl/Verbs.h"

#include <algorithm>
#include <array>
#include <fnmatch.h>
#include <map>
#include <memory>

namespace trs::ctl {

namespace {

using catalogue::Value;

bool isEndpoint(std::string const& source) { return source.starts_with("unix:") || source.starts_with("tcp:"); }

// A side of a comparison: an endpoint, a file, or standard input as "-".
ExitCode load(Program::Options options, std::string const& source, Value& document)
{
    if (isEndpoint(source)) {
        options.unit = source;
        ExitCode const code = readUnit(options, "", document);
        Broker::instance().removePeers(); // the other side is another unit
        return code;
    }
    std::string text;
    std::string const why = source == "-" ? catalogue::readStandardInput(text) : catalogue::readWholeFile(source, text);
    if (!why.empty()) {
        return complain(why);
    }
    std::string wrong = catalogue::parseJson(text, document);
    if (wrong.empty()) {
        bool const isSnapshot = document.is_object() && document.contains("objects") && document["objects"].is_object();
        wrong = isSnapshot ? "" : "no snapshot";
    }
    return wrong.empty() ? ExitCode::good : complain('\'' + source + "' is " + wrong);
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

void addDiffVerbs(Program& program)
{
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
        [compared](Program::Options const& options) { return diff(options, compared->sides, compared->ignored); },
        Program::Units::none);
}

} // namespace trs::ctl
