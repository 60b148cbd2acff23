#include "catalogue/Walk.h"

#include "catalogue/ManyCalls.h"
#include "catalogue/OperationKind.h"
#include "catalogue/References.h"

#include <algorithm>
#include <deque>

namespace trs::catalogue {

namespace {

bool derives(Class const* type, Class const& base)
{
    while (type != nullptr && type != &base) {
        type = type->base();
    }
    return type != nullptr;
}

} // namespace

void Walk::meet(ObjectName const& name, int depth, Object const* from, Operation const* via)
{
    Class const* const type = findClass(name.className);
    auto const found = byId_.find(name.id);
    if (found == byId_.end()) {
        if (objects_.size() < options_.mostObjects) {
            Object& object = objects_.emplace_back(Object{name, type, depth, from, via});
            byId_[name.id] = &object;
            await(object, nullptr);
        }
        return;
    }
    Object& object = *found->second;
    Class const* const known = object.type;
    if (type != nullptr && type != known && (known == nullptr || derives(type, *known))) {
        object.name = name;
        object.type = type;
        await(object, known);
    }
}

// What can be read of the object, and could not while it was known as that class.
void Walk::await(Object const& object, Class const* known)
{
    if (object.type == nullptr || object.depth >= options_.depth) {
        return;
    }
    std::vector<Operation const*> const all = object.type->operations();
    std::size_t const first = known != nullptr ? known->operations().size() : 0; // a base's come first
    for (std::size_t i = first; i < all.size(); ++i) {
        if (isPlainRead(*all[i])) {
            waiting_.push_back({&object, all[i]});
        }
    }
}

std::optional<Walk::Call> Walk::next()
{
    // An object is as deep as the shortest way to it, which another call of the level above may be.
    if (waiting_.empty() || (waiting_.front().object->depth > level_ && underWay_ > 0)) {
        return std::nullopt;
    }
    Call const call = waiting_.front();
    waiting_.pop_front();
    level_ = std::max(level_, call.object->depth);
    ++underWay_;
    return call;
}

std::vector<std::string> Walk::answer(Call const& call, Outcome const& outcome)
{
    --underWay_;
    if (outcome.kind != Outcome::Kind::done) {
        return {};
    }
    std::vector<std::string> references = referencesIn(*call.operation, outcome.results);
    for (std::string const& reference : references) {
        ObjectName name;
        ObjectName::parse(reference, name);
        meet(name, call.object->depth + 1, call.object, call.operation);
    }
    return references;
}

void makeCalls(Walk& walk, Visitor const& visit, std::optional<std::chrono::steady_clock::time_point> end)
{
    std::deque<Walk::Call> underWay;
    auto const next = [&]() -> std::optional<PlannedCall> {
        std::optional<Walk::Call> const call = walk.next();
        if (!call) {
            return std::nullopt;
        }
        underWay.push_back(*call);
        return PlannedCall{call->object->name.id, call->operation};
    };
    auto const take = [&](Outcome& outcome) {
        Walk::Call const call = underWay.front();
        underWay.pop_front();
        std::vector<std::string> const references = walk.answer(call, outcome);
        return visit({*call.object, *call.operation, outcome, references});
    };
    makeCalls(next, take, end);
}

bool isUnitLost(Outcome const& outcome)
{
    using enum CallFailure::Kind;
    CallFailure::Kind const kind = outcome.failure.kind;
    return outcome.kind == Outcome::Kind::failed &&
           (kind == deadline || kind == notConnected || kind == connectionLost);
}

} // namespace trs::catalogue
