#include "tools/trsctl/UnitWalk.h"

#include "catalogue/Collections.h"
#include "catalogue/OperationKind.h"
#include "catalogue/References.h"

#include <map>
#include <set>

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
                    isWanted = visitors_.plain(visit);
                    return isWanted;
                },
                end_);
            isWanted = isWanted && walk_.waiting() == 0;
            if (asked == walk_.objects().size()) {
                break;
            }
            for (; isWanted && asked < walk_.objects().size(); ++asked) {
                isWanted = askByKeys(walk_.objects()[asked]);
            }
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

    bool askByKeys(Walk::Object const& object)
    {
        if (object.type == nullptr) {
            return true;
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
            if (!askEach(object, *reader, keys)) {
                return false;
            }
        }
        return true;
    }

    bool askEach(Walk::Object const& object, Operation const& reader, std::vector<Value> const& keys)
    {
        std::set<Value> asked;
        for (Value const& key : keys) {
            if (!asked.insert(key).second) {
                continue;
            }
            if (end_ && std::chrono::steady_clock::now() > *end_) {
                return false;
            }
            Outcome const outcome = catalogue::call(TipprmiObjectClient(TipprmiOID(object.name.id)), reader, {key});
            if (isUnitLost(outcome)) {
                return false;
            }
            if (outcome.kind == Outcome::Kind::failed) {
                break; // the object has no such operation
            }
            if (outcome.kind == Outcome::Kind::done) {
                std::vector<std::string> const references = catalogue::referencesIn(reader, outcome.results);
                for (std::string const& reference : references) {
                    catalogue::ObjectName name;
                    catalogue::ObjectName::parse(reference, name);
                    walk_.begin(name);
                }
                visitors_.keyed({object, reader, key, outcome, references});
            }
        }
        return true;
    }

    Walk& walk_;
    UnitVisitors const& visitors_;
    std::optional<std::chrono::steady_clock::time_point> const end_;
    std::map<std::string, std::map<std::string, Value>> told_; // by identifier and operation
};

} // namespace

bool walkUnit(catalogue::Walk& walk, UnitVisitors const& visitors,
              std::optional<std::chrono::steady_clock::time_point> end)
{
    return KeyedWalk(walk, visitors, end).run();
}

} // namespace trs::ctl
