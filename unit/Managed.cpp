#include "unit/Managed.h"

#include "catalogue/Call.h"
#include "catalogue/OperationKind.h"
#include "clients/services/ConditionClient.h"
#include "clients/transmission/AtmPersistentObjectClient.h"
#include "platform/TipprmiStream.h"
#include "rmi/ApplicationObjectSkeleton.h"

namespace trs::sim {

namespace {

constexpr long minor = 3;

catalogue::Class const& classOf(std::string_view name) { return *catalogue::findClass(name); }

bool handsOutCondition(catalogue::Operation const& operation)
{
    return operation.parameters.empty() && operation.result != nullptr &&
           operation.result->name == reflect::className<ConditionClient>;
}

} // namespace

Managed::~Managed() { inventory_.remove(id_); }

template <class Proxy>
void Managed::addServices(Servant& servant)
{
    location_.emplace(id_);
    performance_.emplace(inventory_, id_);
    inventory_.add(location_->proxy());
    inventory_.add(performance_->proxy());
    servant.on<&Proxy::getLocationId>([this] { return location_->proxy(); })
        .template on<&Proxy::getPerformanceSvc>([this] { return performance_->proxy(); });
}

void Managed::addFaults(Servant& servant, catalogue::Class const& type)
{
    std::vector<Condition::Kind> kinds;
    std::vector<std::pair<unsigned long, unsigned long>> operations;
    for (catalogue::Operation const* const operation : type.operations()) {
        if (handsOutCondition(*operation)) {
            std::string_view const subject = subjectOf(*operation);
            std::string const name(subject.empty() ? operation->name : subject);
            kinds.push_back({name, std::string(operation->comment()), minor, name.starts_with("Down")});
            operations.emplace_back(operation->classId, operation->index);
        }
    }
    faults_.emplace(id_, kinds);
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        conditions_[operations[i]] = faults_->condition(kinds[i].name);
    }
    faults_->enter(inventory_);
    servant.on<&ApplicationObjectClient::getFaultSvc>([this] { return faults_->proxy(); });
}

Managed::Managed(Inventory& inventory, Servant& servant, std::string_view className)
    : inventory_(inventory), id_(servant.getOID().getIdString()), servant_(servant),
      properties_(id_, classOf(className), inventory)
{
    catalogue::Class const& type = classOf(className);
    inventory_.add(id_, type, this);
    if (isA(type, reflect::className<ApplicationObjectClient>)) {
        addServices<ApplicationObjectClient>(servant);
        addFaults(servant, type);
        servant.on<&ApplicationObjectClient::hasLocationId>([] { return true; });
    } else if (isA(type, reflect::className<AtmPersistentObjectClient>)) {
        addServices<AtmPersistentObjectClient>(servant);
    }
    servant.otherwise([this](unsigned long classId, unsigned long opIndex, auto& request, auto& reply) {
        return handOutCondition(classId, opIndex, reply) || answerByShape(classId, opIndex, request, reply);
    });
}

bool Managed::answerByShape(unsigned long classId, unsigned long opIndex, TipprmiStream& request, TipprmiStream& reply)
{
    if (!servant_.isObserved(classId, opIndex)) {
        return properties_.answer(classId, opIndex, request, reply);
    }
    TipprmiStream given(100);
    given.marshall(request.data() + request.size() - request.available(), static_cast<int>(request.available()));
    std::size_t const begin = reply.size();
    bool const isAnswered = properties_.answer(classId, opIndex, request, reply);
    if (isAnswered && !request.hasUnmarshallingFailed()) {
        TipprmiStream told(100);
        told.marshall(reply.data() + begin, static_cast<int>(reply.size() - begin));
        servant_.notifyObservers(classId, opIndex,
                                 catalogue::parametersOf(*properties_.find(classId, opIndex), given, told));
    }
    return isAnswered;
}

std::string Managed::force(catalogue::Operation const& reader, catalogue::Value const& results)
{
    TipprmiStream tried(100);
    if (std::string wrong = catalogue::writeResults(tried, reader, results); !wrong.empty()) {
        return wrong;
    }
    if (forced_.empty()) {
        servant_.instead([this](unsigned long classId, unsigned long opIndex, auto& request, auto& reply) {
            return answerForced(classId, opIndex, request, reply);
        });
    }
    forced_[&reader] = results;
    return {};
}

void Managed::clear()
{
    properties_.clear();
    forced_.clear();
    for (auto const& [operation, keys] : keys_) {
        keys.clear();
    }
}

bool Managed::answerForced(unsigned long classId, unsigned long opIndex, TipprmiStream& request, TipprmiStream& reply)
{
    auto const found = forced_.find(properties_.find(classId, opIndex));
    if (found == forced_.end()) {
        return false;
    }
    catalogue::Operation const& operation = *found->first;
    if (request.available() != 0) {
        request.fail();
    }
    catalogue::writeResults(reply, operation, found->second);
    return true;
}

bool Managed::handOutCondition(unsigned long classId, unsigned long opIndex, TipprmiStream& reply)
{
    auto const found = conditions_.find({classId, opIndex});
    if (found == conditions_.end()) {
        return false;
    }
    reply << found->second->proxy();
    return true;
}

} // namespace trs::sim
