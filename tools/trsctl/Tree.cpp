// trsctl tree: the graph of a unit's objects.
#include "broker/PrintableText.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/support/Colour.h"
#include "tools/support/Console.h"
#include "tools/trsctl/Program.h"
#include "tools/trsctl/References.h"
#include "tools/trsctl/Verbs.h"

#include <algorithm>
#include <memory>
#include <set>

namespace trs::ctl {

namespace {

using catalogue::Outcome;
using catalogue::Value;

constexpr std::size_t mostTreeObjects = 10'000; // a unit that makes up objects without end comes to one

// An object, and how its parent leads to it.
struct Node {
    std::string object;
    std::string operation;
    bool isSeen; // above or before, where its own children are
    std::vector<Node> children;
};

class Walker {
public:
    explicit Walker(int depth) : depth_(depth) {}

    Node walk(std::string const& object, std::string const& operation, int level)
    {
        catalogue::ObjectName name;
        catalogue::ObjectName::parse(object, name);
        Node node{object, operation, !seen_.insert(name.id).second, {}};
        if (node.isSeen || level == depth_ || seen_.size() > mostTreeObjects) {
            return node;
        }
        catalogue::Class const* const type = catalogue::findClass(name.className);
        if (type == nullptr) {
            return node; // one of the framework's value objects
        }
        TipprmiObjectClient const proxy{TipprmiOID(name.id)};
        for (catalogue::Operation const* const each : type->operations()) {
            Outcome const outcome = isPlainRead(*each) ? catalogue::call(proxy, *each, {}) : Outcome();
            if (outcome.kind != Outcome::Kind::done) {
                continue;
            }
            for (std::string const& next : referencesIn(*each, outcome.results)) {
                node.children.push_back(walk(next, std::string(each->name), level + 1));
            }
        }
        return node;
    }

private:
    int depth_;
    std::set<std::string> seen_; // identifiers: an object may be met as one of its own class and of a base
};

void sayText(Node const& node, std::size_t level)
{
    std::string const via = node.operation.empty() ? "" : "  (" + node.operation + (node.isSeen ? ", above)" : ")");
    tools::say(std::string(2 * level, ' ') + tools::coloured(escaped(node.object), tools::Colour::name) +
               tools::coloured(via, tools::Colour::aside));
    for (Node const& child : node.children) {
        sayText(child, level + 1);
    }
}

Value toValue(Node const& node)
{
    Value value{{"object", node.object}};
    if (!node.operation.empty()) {
        value["operation"] = node.operation;
    }
    for (Node const& child : node.children) {
        value["children"].push_back(toValue(child));
    }
    return value;
}

std::string jsonText(std::string const& text) { return catalogue::toJson(Value(text), -1); }

void sayDot(Node const& node)
{
    for (Node const& child : node.children) {
        tools::say("  " + jsonText(node.object) + " -> " + jsonText(child.object) +
                   " [label=" + jsonText(child.operation) + "];");
        sayDot(child);
    }
}

} // namespace

ExitCode Unit::tree(std::string const& object, int depth, bool isDot)
{
    Target target;
    if (ExitCode const code = connect(object, target); code != ExitCode::good) {
        return code;
    }
    TreflectHandlerState const running;
    std::vector<catalogue::Operation const*> const all = target.type->operations();
    auto const first = std::ranges::find_if(all, [](catalogue::Operation const* each) { return isPlainRead(*each); });
    if (first != all.end()) {
        Outcome const outcome = catalogue::call(target.object, **first, {});
        if (outcome.kind == Outcome::Kind::failed && exitCodeOf(outcome.failure) != ExitCode::noSuchOperation) {
            return complain(target, **first, outcome);
        }
    }
    Node const root = Walker(depth).walk(target.name.text(), {}, 0);
    if (isDot) {
        tools::say("digraph unit {");
        sayDot(root);
        tools::say("}");
    } else if (options_.format == Format::json) {
        tools::say(catalogue::toJson(toValue(root)));
    } else {
        sayText(root, 0);
    }
    return ExitCode::good;
}

void addTreeVerb(Program& program)
{
    struct Words {
        std::string object = "IpNode";
        int depth = 8;
        bool isDot = false;
    };
    auto const words = std::make_shared<Words>();
    program.add({.name = "tree",
                 .help = "Show what objects lead to",
                 .example = "tree --depth 2",
                 .options =
                     {
                         Program::objectArgument(words->object, false),
                         {.name = "--depth",
                          .target = &words->depth,
                          .help = "How many steps to go",
                          .type = "N",
                          .range = {{0, 100}},
                          .showsDefault = true},
                         {.name = "--dot", .target = &words->isDot, .help = "As a graph for Graphviz"},
                     }},
                [words](Program::Options const& options) {
                    return options.unitOf().tree(words->object, words->depth, words->isDot);
                });
}

} // namespace trs::ctl
