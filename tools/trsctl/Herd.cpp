#include "tools/trsctl/Herd.h"

#include "catalogue/OperationKind.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/trsctl/UnitDocument.h"

#include <algorithm>
#include <fnmatch.h>

namespace trs::ctl {

namespace {

using catalogue::Outcome;
using catalogue::Value;

// Why an object cannot be observed.
Outcome whyNotObserved()
{
    Outcome outcome;
    outcome.kind = Outcome::Kind::failed;
    outcome.failure = lastCallFailure();
    return outcome;
}

} // namespace

ExitCode listen(Target const& target, std::vector<catalogue::Operation const*> const& operations, Feed& feed,
                std::list<Listener>& listeners)
{
    TreflectHandlerState const running;
    for (catalogue::Operation const* const operation : operations) {
        Listener& listener = listeners.emplace_back(target, *operation, feed);
        if (!observe(target.object, operation->classId, operation->index, listener)) {
            return complain(target, *operation, whyNotObserved());
        }
    }
    return ExitCode::good;
}

std::vector<catalogue::Operation const*> changesOf(catalogue::Class const& type)
{
    std::vector<catalogue::Operation const*> operations = type.operations();
    std::erase_if(operations,
                  [](catalogue::Operation const* each) { return kindOf(*each) == catalogue::OperationKind::read; });
    return operations;
}

ExitCode Herd::look(bool isFirst)
{
    Value document;
    if (ExitCode const code = readUnit(options_, "", document); code != ExitCode::good) {
        return code;
    }
    for (auto member = members_.begin(); member != members_.end();) {
        bool const isThere = document["objects"].contains(member->first);
        if (!isThere) {
            tell(member->first, "gone");
        }
        member = isThere ? std::next(member) : members_.erase(member);
    }
    for (auto const& [object, told] : document["objects"].items()) {
        if (isMeant(object) && !members_.contains(object)) {
            if (ExitCode const code = add(object); code != ExitCode::good) {
                return code;
            }
            if (!isFirst) {
                tell(object, "appeared");
            }
        }
    }
    return ExitCode::good;
}

bool Herd::isMeant(std::string const& object) const
{
    std::string const id = object.substr(object.find(':') + 1);
    return ::fnmatch(pattern_.c_str(), object.c_str(), 0) == 0 || ::fnmatch(pattern_.c_str(), id.c_str(), 0) == 0 ||
           (pattern_.ends_with("/**") && id + "/**" == pattern_);
}

ExitCode Herd::add(std::string const& object)
{
    Target target;
    if (ExitCode const code = findTarget(options_, object, target); code != ExitCode::good) {
        return code;
    }
    std::vector<catalogue::Operation const*> operations;
    for (std::string const& name : names_) {
        if (catalogue::Operation const* const operation =
                catalogue::find(*target.type, name, catalogue::OperationKind::read)) {
            operations.push_back(operation);
        }
    }
    operations = names_.empty() ? changesOf(*target.type) : operations;
    std::ranges::copy_if(operations, std::back_inserter(operations_), [this](catalogue::Operation const* each) {
        return std::ranges::find(operations_, each) == operations_.end();
    });
    return listen(target, operations, feed_, members_[object]);
}

void Herd::tell(std::string const& object, char const* what)
{
    feed_.put({{"time", catalogue::timestamp(std::chrono::system_clock::now())},
               {"object", object},
               {"operation", what},
               {"parameters", Value::object()}});
}

} // namespace trs::ctl
