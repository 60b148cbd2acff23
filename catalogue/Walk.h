// Walks over a unit's objects: from some of them, by all that can be read of each, to those that they lead to.
#pragma once

#include "catalogue/Call.h"
#include "catalogue/Class.h"
#include "catalogue/ObjectName.h"

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace trs::catalogue {

// Which calls a walk consists of. It makes none: whoever does tells it what came of them, one after the other or with
// many under way. The order of the answers decides nothing but the order of the objects, and which of two unrelated
// classes counts that one was met as.
class Walk {
public:
    struct Options {
        int depth = std::numeric_limits<int>::max(); // objects so many steps away are met, but nothing is read of them
        std::size_t mostObjects = 10'000;            // a unit that makes up objects without end comes to one
    };
    struct Object {
        // By the most derived of the classes that it was met as.
        ObjectName name;
        Class const* type; // null for one that the catalogue has not; nothing is read of the object then
        int depth;         // steps from where the walk began
        Object const* from = nullptr;
        Operation const* via = nullptr; // which led there first; null where the walk began
    };
    struct Call {
        Object const* object;
        Operation const* operation; // one that reads and takes nothing
    };

    Walk() : Walk(Options()) {}
    explicit Walk(Options options) : options_(options) {}
    Walk(Walk const&) = delete;
    Walk& operator=(Walk const&) = delete;

    // Where it begins; there may be several such objects.
    void begin(ObjectName const& name) { meet(name, 0, nullptr, nullptr); }

    // The next call to make. None when there is no other one, or until calls are answered that are under way.
    std::optional<Call> next();
    // Takes what came of a call that next() told. The objects that its results refer to, as they do.
    std::vector<std::string> answer(Call const& call, Outcome const& outcome);

    // Those that were met, each once, in the order in which they were.
    std::deque<Object> const& objects() const { return objects_; }
    // How many calls are known to come.
    std::size_t waiting() const { return waiting_.size(); }

private:
    void meet(ObjectName const& name, int depth, Object const* from, Operation const* via);
    void await(Object const& object, Class const* known);

    Options const options_;
    std::deque<Object> objects_;
    std::map<std::string, Object*, std::less<>> byId_;
    std::deque<Call> waiting_;
    std::size_t underWay_ = 0;
    int level_ = 0; // the depth that calls were told of
};

// Makes the calls of a walk, many at a time, and has each visited in their order, until there are no more, until `end`,
// for which calls wait no longer, or until `visit` returns false. The calling thread is under the run permission.
struct Visit {
    Walk::Object const& object;
    Operation const& operation;
    Outcome& outcome;                           // the visitor's to take
    std::vector<std::string> const& references; // of a call that is done
};
using Visitor = std::function<bool(Visit const&)>;
void makeCalls(Walk& walk, Visitor const& visit, std::optional<std::chrono::steady_clock::time_point> end = {});

// Whether the unit is silent or gone, so that other calls would hardly come to anything else.
bool isUnitLost(Outcome const& outcome);

} // namespace trs::catalogue
