#include "tools/trsctl/UnitWalk.h"

#include "catalogue/Collections.h"
#include "catalogue/ManyCalls.h"
#include "catalogue/OperationKind.h"
#include "catalogue/References.h"

#include <algorithm>
#include <map>
#include <set>
#include <vector>

namespace trs::ctl {

namespace {

using catalogue::Operation;
using catalogue::Outcome;
using catalogue::Value;
using catalogue::Walk;

class KeyedWalk {
public:
    KeyedWalk(Walk& walk, UnitVisitors const& visitors, std::optional<std::chrono::steady_clock::time_point> end)
        : walk_(walk), visitors_(visitors), end_(end)
    {
    }

    bool run()
    {
        bool isWanted = true;
        for (std::size_t asked = 0; isWanted;) {
            catalogue::makeCalls(
                walk_,
                [&](catalogue::Visit const& visit) {
                    keep(visit);
                    isWanted = isThere(visit.object, visit.operation, visit.outcome) && visitors_.plain(visit);
                    return isWanted;
                },
                end_);
            isWanted = isWanted && walk_.waiting() == 0;
            if (asked == walk_.objects().size()) {
                break;
            }
            for (; asked < walk_.objects().size(); ++asked) {
                findKeys(walk_.objects()[asked]);
            }
            isWanted = isWanted && askByKeys();
        }
        return isWanted;
    }

private:
    // What keys may be taken from.
    void keep(catalogue::Visit const& visit)
    {
        if (visit.outcome.kind == Outcome::Kind::done && visit.operation.name.ends_with("Tags")) {
            told_[visit.object.name.id][std::string(visit.operation.name)] = visit.outcome.results;
        }
    }

    bool isThere(Walk::Object const& object, Operation const& operation, Outcome const& outcome) const
    {
        bool const isLost = isUnitLost(outcome);
        if (isLost && visitors_.lost) {
            visitors_.lost(object, operation, outcome);
        }
        return !isLost;
    }

    // A call of a read that takes a key.
    struct KeyedCall {
        Walk::Object const* object;
        Operation const* reader;
        Value key;
    };

    void findKeys(Walk::Object const& object)
    {
        if (object.type == nullptr) {
            return;
        }
        auto const told = [&](std::string_view operation) -> Value const* {
            auto const found = told_[object.name.id].find(std::string(operation));
            return found != told_[object.name.id].end() ? &found->second : nullptr;
        };
        for (Operation const* const reader : object.type->operations()) {
            if (kindOf(*reader) != catalogue::OperationKind::read || catalogue::typesOf(*reader, true).size() != 1) {
                continue;
            }
            std::vector<Value> keys = catalogue::keysOf(*reader, told);
            if (visitors_.keys) {
                std::ranges::copy(visitors_.keys(object, *reader), std::back_inserter(keys));
            }
            std::set<Value> seen;
            for (Value& key : keys) {
                if (seen.insert(key).second) {
                    calls_.push_back({&object, reader, std::move(key)});
                }
            }
        }
    }

    // False when it is enough, or the time is over.
    bool askByKeys()
    {
        std::size_t begun = 0;
        std::size_t taken = 0;
        auto const next = [&]() -> std::optional<catalogue::PlannedCall> {
            if (begun == calls_.size()) {
                return std::nullopt;
            }
            KeyedCall const& call = calls_[begun++];
            return catalogue::PlannedCall{call.object->name.id, call.reader, {call.key}};
        };
        bool const isOver = catalogue::makeCalls(
            next, [&](Outcome const& outcome) { return take(calls_[taken++], outcome); }, end_);
        calls_.clear();
        return isOver;
    }

    bool take(KeyedCall const& call, Outcome const& outcome)
    {
        if (outcome.kind == Outcome::Kind::done) {
            std::vector<std::string> const references = catalogue::referencesIn(*call.reader, outcome.results);
            for (std::string const& reference : references) {
                catalogue::ObjectName name;
                catalogue::ObjectName::parse(reference, name);
                walk_.begin(name);
            }
            visitors_.keyed({*call.object, *call.reader, call.key, outcome, references});
        }
        return isThere(*call.object, *call.reader, outcome);
    }

    Walk& walk_;
    UnitVisitors const& visitors_;
    std::optional<std::chrono::steady_clock::time_point> const end_;
    std::map<std::string, std::map<std::string, Value>> told_; // by identifier and operation
    std::vector<KeyedCall> calls_;                             // to be made
};

} // namespace

bool walkUnit(catalogue::Walk& walk, UnitVisitors const& visitors,
              std::optional<std::chrono::steady_clock::time_point> end)
{
    return KeyedWalk(walk, visitors, end).run();
}

} // namespace trs::ctl
