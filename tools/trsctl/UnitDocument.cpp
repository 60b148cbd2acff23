#include "tools/trsctl/UnitDocument.h"

#include "catalogue/ConstantNames.h"
#include "catalogue/SimulatorClient.h"
#include "catalogue/Walk.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/support/Progress.h"
#include "tools/trsctl/Target.h"

#include <map>

namespace trs::ctl {

namespace {

using catalogue::Outcome;
using catalogue::Value;

// What all objects tell that walks come to.
class Collector {
public:
    explicit Collector(Program::Options const& options) : options_(options) {}

    // Adds all that is reached from the object. What is wrong is said.
    ExitCode add(std::string const& object)
    {
        Target target;
        if (ExitCode const code = findTarget(options_, object, target); code != ExitCode::good) {
            return code;
        }
        TreflectHandlerState const running;
        walk_.begin(target.name);
        tools::Progress progress("objects");
        ExitCode end = ExitCode::good;
        catalogue::makeCalls(walk_, [&](catalogue::Visit const& visit) {
            if (isUnitLost(visit.outcome)) {
                progress.clear();
                end = complain({target.unit, visit.object.name, visit.object.type, {}}, visit.operation, visit.outcome);
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
            return {{"error", whyNoResults(visit.operation, visit.outcome)}};
        }
        catalogue::nameConstants(visit.operation, visit.outcome.results);
        return std::move(visit.outcome.results);
    }

    Program::Options const& options_;
    catalogue::Walk walk_;
    std::map<std::string, Value> told_; // by identifier
};

} // namespace

ExitCode readUnit(Program::Options const& options, std::string const& object, Value& document)
{
    Collector collector(options);
    if (!object.empty()) {
        ExitCode const code = collector.add(object);
        document = collector.document();
        return code;
    }
    for (catalogue::ObjectName const& root : catalogue::ObjectName::wellKnown()) {
        if (root.id == SimulatorClient::SIMULATOR_OID) {
            continue; // which tells how often it was called
        }
        if (ExitCode const code = collector.add(root.id); code != ExitCode::good) {
            return code;
        }
    }
    document = collector.document();
    return ExitCode::good;
}

} // namespace trs::ctl
