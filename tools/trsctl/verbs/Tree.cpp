// trsctl tree: the graph of a unit's objects.
#include "broker/PrintableText.h"
#include "catalogue/Json.h"
#include "catalogue/ValueText.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/support/Colour.h"
#include "tools/support/StandardStreams.h"
#include "tools/trsctl/Target.h"
#include "tools/trsctl/UnitDocument.h"
#include "tools/trsctl/UnitWalk.h"
#include "tools/trsctl/Verbs.h"

#include <algorithm>
#include <map>
#include <memory>
#include <set>

namespace trs::ctl {

namespace {

using catalogue::Value;

// An object, and how its parent leads to it.
struct Node {
    std::string object;
    std::string operation;
    bool isSeen; // above, where its own children are if they are anywhere
    std::vector<Node> children;
};

// What an object leads to: by which operation, and as what.
struct Edge {
    std::string operation; // with the key that it was given, if it takes one
    std::string object;
};
using Graph = std::map<std::string, std::vector<Edge>>; // by identifier

// Shows each object's own children where it stands first.
class Planter {
public:
    Planter(Graph const& graph, std::map<std::string, std::string> const& names, int depth)
        : graph_(graph), names_(names), depth_(depth)
    {
    }

    Node plant(std::string const& object, std::string const& operation, int level)
    {
        catalogue::ObjectName name;
        catalogue::ObjectName::parse(object, name);
        auto const known = names_.find(name.id);
        Node node{known != names_.end() ? known->second : object, operation, !shown_.insert(name.id).second, {}};
        auto const edges = graph_.find(name.id);
        if (level < depth_ && edges != graph_.end() && hasChildren_.insert(name.id).second) {
            node.isSeen = false;
            for (Edge const& edge : edges->second) {
                node.children.push_back(plant(edge.object, edge.operation, level + 1));
            }
        }
        return node;
    }

private:
    Graph const& graph_;
    std::map<std::string, std::string> const& names_; // an object may be met as one of its own class and of a base
    int const depth_;
    // Identifiers.
    std::set<std::string> shown_;
    std::set<std::string> hasChildren_;
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

struct TreeWords {
    std::string object; // none: the well-known ones that are there
    int depth = 8;
    bool isDot = false;
};

void say(std::vector<Node> const& trees, Program::Options const& options, TreeWords const& words)
{
    if (words.isDot) {
        tools::say("digraph unit {");
        std::ranges::for_each(trees, sayDot);
        tools::say("}");
    } else if (options.format == Format::json) {
        Value all = Value::array();
        std::ranges::transform(trees, std::back_inserter(all), toValue);
        writeResults(words.object.empty() ? all : all.front(), options.format);
    } else {
        std::ranges::for_each(trees, [](Node const& root) { sayText(root, 0); });
    }
}

// What a walk comes to. A unit has an IP node; the other well-known objects may be missing.
class Survey {
public:
    explicit Survey(Target const& target) : target_(target), identification_(*target.type) {}

    // The first root is the target. What is wrong is said.
    ExitCode walk(std::vector<catalogue::ObjectName> const& roots, int depth)
    {
        TreflectHandlerState const running;
        catalogue::Walk walk({.depth = std::max(depth, 1)}); // whether the object is there is asked at least
        std::ranges::for_each(roots, [&walk](catalogue::ObjectName const& root) { walk.begin(root); });
        ExitCode end = ExitCode::good;
        auto const plain = [this](catalogue::Visit const& visit) {
            take(visit);
            return true;
        };
        auto const lose = [&](catalogue::Walk::Object const& object, catalogue::Operation const& operation,
                              catalogue::Outcome const& outcome) {
            end = complain({target_.unit, object.name, object.type, {}}, operation, outcome);
        };
        walkUnit(walk, {plain, [this](KeyedVisit const& visit) { take(visit); }, {}, lose});
        for (catalogue::Walk::Object const& object : walk.objects()) {
            names_[object.name.id] = object.name.text();
        }
        if (end == ExitCode::good && identification_.failed() != nullptr) {
            graph_.clear();
            return complain(target_, *identification_.failed(), identification_.outcome());
        }
        return end;
    }
    Graph const& graph() const { return graph_; }
    // Of the most derived classes, by identifier.
    std::map<std::string, std::string> const& names() const { return names_; }

private:
    void take(catalogue::Visit const& visit)
    {
        if (visit.object.name.id == target_.name.id) {
            identification_.add(visit.operation, visit.outcome);
        }
        if (visit.object.from == nullptr && visit.outcome.failure.kind == CallFailure::Kind::noSuchObject) {
            return;
        }
        std::vector<Edge>& edges = graph_[visit.object.name.id];
        for (std::string const& reference : visit.references) {
            edges.push_back({std::string(visit.operation.name), reference});
        }
    }
    void take(KeyedVisit const& visit)
    {
        for (std::string const& reference : visit.references) {
            graph_[visit.object.name.id].push_back(
                {std::string(visit.operation.name) + ' ' + catalogue::textOf(visit.key), reference});
        }
    }

    Target const& target_;
    Identification identification_;
    Graph graph_;
    std::map<std::string, std::string> names_;
};

ExitCode tree(Program::Options const& options, TreeWords const& words)
{
    Target target;
    std::string const first = words.object.empty() ? catalogue::ObjectName::wellKnown().front().id : words.object;
    if (ExitCode const code = findTarget(options, first, target); code != ExitCode::good) {
        return code;
    }
    std::vector<catalogue::ObjectName> roots{target.name};
    if (words.object.empty()) {
        std::ranges::copy(catalogue::ObjectName::wellKnown().subspan(1), std::back_inserter(roots));
        roots.push_back(unitRoots().back());
    }
    Survey survey(target);
    ExitCode const end = survey.walk(roots, words.depth);
    if (survey.graph().empty() && end != ExitCode::good) {
        return end;
    }
    Planter planter(survey.graph(), survey.names(), words.depth);
    std::vector<Node> trees;
    for (catalogue::ObjectName const& root : roots) {
        if (survey.graph().contains(root.id)) {
            trees.push_back(planter.plant(root.text(), {}, 0));
        }
    }
    say(trees, options, words);
    return end;
}

} // namespace

void addTreeVerbs(Program& program)
{
    auto const words = std::make_shared<TreeWords>();
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
                [words](Program::Options const& options) { return tree(options, *words); });
}

} // namespace trs::ctl
