#include "tools/trsctl/UnitDocument.h"

#include "catalogue/ConstantNames.h"
#include "catalogue/SimulatorClient.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/support/Progress.h"
#include "tools/trsctl/Target.h"
#include "tools/trsctl/UnitWalk.h"

#include <algorithm>
#include <map>
#include <set>

namespace trs::ctl {

namespace {

using catalogue::Outcome;
using catalogue::Value;

// What all objects tell that a walk comes to.
class Collector {
public:
    // `roots`: the first is the target. What is wrong is said.
    ExitCode read(Target const& target, std::vector<catalogue::ObjectName> const& roots, MoreKeys const& keys)
    {
        TreflectHandlerState const running;
        std::ranges::for_each(roots, [this](catalogue::ObjectName const& each) { walk_.begin(each); });
        tools::Progress progress("objects");
        Identification identification(*target.type);
        ExitCode end = ExitCode::good;
        auto const plain = [&](catalogue::Visit const& visit) {
            if (visit.object.name.id == target.name.id) {
                identification.add(visit.operation, visit.outcome);
            }
            take(visit);
            progress.show(told_.size(), walk_.objects().size());
            return true;
        };
        auto const lose = [&](catalogue::Walk::Object const& object, catalogue::Operation const& operation,
                              Outcome const& outcome) {
            progress.clear();
            end = complain({target.unit, object.name, object.type, {}}, operation, outcome);
        };
        walkUnit(walk_, {plain, [this](KeyedVisit const& visit) { take(visit); }, keys, lose});
        if (end == ExitCode::good && identification.failed() != nullptr) {
            progress.clear();
            return complain(target, *identification.failed(), identification.outcome());
        }
        return end;
    }

    // In a stable order.
    Value objects()
    {
        std::map<std::string, Value> objects;
        for (catalogue::Walk::Object const& object : walk_.objects()) {
            if (object.type != nullptr && !missing_.contains(object.name.id)) {
                Value& told = told_[object.name.id];
                objects[object.name.text()] = told.is_null() ? Value::object() : std::move(told);
            }
        }
        Value all = Value::object();
        for (auto& [name, told] : objects) {
            all[name] = std::move(told);
        }
        return all;
    }

private:
    void take(catalogue::Visit const& visit)
    {
        bool const isMissing = visit.object.from == nullptr && visit.outcome.kind == Outcome::Kind::failed &&
                               visit.outcome.failure.kind == CallFailure::Kind::noSuchObject;
        if (isMissing) { // not every unit has all roots
            missing_.insert(visit.object.name.id);
            return;
        }
        Value& told = told_[visit.object.name.id][std::string(visit.operation.name)];
        if (visit.outcome.kind == Outcome::Kind::done) {
            catalogue::nameConstants(*visit.object.type, visit.operation, visit.outcome.results);
            told = std::move(visit.outcome.results);
        } else {
            told = {{"error", whyNoResults(visit.operation, visit.outcome)}};
        }
    }

    void take(KeyedVisit const& visit)
    {
        Value entry = Value::object();
        std::vector<std::string_view> const names = visit.operation.parameterNames();
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (visit.operation.parameters[i].isIn) {
                entry[std::string(names[i])] = visit.key;
            }
        }
        entry.update(visit.outcome.results);
        catalogue::nameConstants(*visit.object.type, visit.operation, entry);
        told_[visit.object.name.id][std::string(visit.operation.name)].push_back(std::move(entry));
    }

    catalogue::Walk walk_;
    std::map<std::string, Value> told_; // by identifier
    std::set<std::string> missing_;
};

} // namespace

std::vector<catalogue::ObjectName> unitRoots()
{
    std::vector<catalogue::ObjectName> roots;
    std::ranges::copy_if(catalogue::ObjectName::wellKnown(), std::back_inserter(roots),
                         [](catalogue::ObjectName const& each) { return each.id != SimulatorClient::SIMULATOR_OID; });
    roots.push_back({"ApplicationObjectClient", "AppObject-1"}); // which nothing leads to
    return roots;
}

ExitCode readUnit(Program::Options const& options, std::string const& object, Value& document, MoreKeys const& keys)
{
    std::vector<catalogue::ObjectName> roots = unitRoots(); // the Simulator tells how often it was called
    Target target;
    if (ExitCode const code = findTarget(options, object.empty() ? roots.front().text() : object, target);
        code != ExitCode::good) {
        return code;
    }
    Collector collector;
    ExitCode const code =
        collector.read(target, object.empty() ? roots : std::vector<catalogue::ObjectName>{target.name}, keys);
    document = Value::object();
    if (object.empty()) {
        document["complete"] = true;
    }
    document["objects"] = collector.objects();
    return code;
}

} // namespace trs::ctl
