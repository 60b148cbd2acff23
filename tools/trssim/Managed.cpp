#include "tools/trssim/Managed.h"

#include "clients/services/ConditionClient.h"
#include "clients/transmission/AtmPersistentObjectClient.h"
#include "platform/TipprmiStream.h"
#include "rmi/ApplicationObjectSkeleton.h"

namespace sim {

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
void Managed::enter(Proxy const& proxy)
{
    inventory_.add(proxy.getOID().getIdString(), classOf(reflect::className<Proxy>));
}

template <class Proxy>
void Managed::addServices(Servant& servant)
{
    location_.emplace(id_);
    performance_.emplace(id_);
    enter(location_->proxy());
    enter(performance_->proxy());
    servant.on<&Proxy::getLocationId>([this] { return location_->proxy(); })
        .template on<&Proxy::getPerformanceSvc>([this] { return performance_->proxy(); });
}

void Managed::addFaults(Servant& servant, catalogue::Class const& type)
{
    std::vector<Condition::Kind> kinds;
    std::vector<std::pair<unsigned long, unsigned long>> operations;
    for (catalogue::Operation const* const operation : type.operations()) {
        if (handsOutCondition(*operation)) {
            constexpr std::string_view get = "get";
            std::string const name(operation->name.substr(operation->name.starts_with(get) ? get.size() : 0));
            kinds.push_back({name, std::string(operation->comment()), minor, name.starts_with("Down")});
            operations.emplace_back(operation->classId, operation->index);
        }
    }
    faults_.emplace(id_, kinds);
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        conditions_[operations[i]] = faults_->condition(kinds[i].name);
    }
    enter(faults_->proxy());
    enter(faults_->adminState().proxy());
    enter(faults_->policy().proxy());
    for (Condition const& condition : faults_->conditions()) {
        enter(condition.proxy());
    }
    servant.on<&ApplicationObjectClient::getFaultSvc>([this] { return faults_->proxy(); });
}

Managed::Managed(Inventory& inventory, Servant& servant, std::string_view className)
    : inventory_(inventory), id_(servant.getOID().getIdString()), properties_(id_, classOf(className), inventory)
{
    catalogue::Class const& type = classOf(className);
    inventory_.add(id_, type);
    if (isA(type, reflect::className<ApplicationObjectClient>)) {
        addServices<ApplicationObjectClient>(servant);
        addFaults(servant, type);
        servant.on<&ApplicationObjectClient::hasLocationId>([] { return true; });
    } else if (isA(type, reflect::className<AtmPersistentObjectClient>)) {
        addServices<AtmPersistentObjectClient>(servant);
    }
    servant.otherwise([this](unsigned long classId, unsigned long opIndex, auto& request, auto& reply) {
        return handOutCondition(classId, opIndex, reply) || properties_.answer(classId, opIndex, request, reply);
    });
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

} // namespace sim
