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

bool handsOutCondition(catalogue::Operation const& operation)
{
    return operation.parameters.empty() && operation.result != nullptr &&
           operation.result->name == reflect::className<ConditionClient>;
}

// Whether the object does not work while a condition of this name is active: what is down, or has lost its signal.
bool disables(std::string_view name)
{
    return name.find("Down") != std::string_view::npos || name == "LOC" || name == "Locd";
}

} // namespace

template <class Proxy>
void Managed::addServices()
{
    location_.emplace(inventory(), id());
    performance_.emplace(inventory(), id(), type());
    servant()
        .on<&Proxy::getLocationId>([this] { return location_->proxy(); })
        .template on<&Proxy::getPerformanceSvc>([this] { return performance_->proxy(); });
}

void Managed::addFaults()
{
    std::vector<Condition::Kind> kinds;
    std::vector<catalogue::Operation const*> operations;
    for (catalogue::Operation const* const operation : type().operations()) {
        if (handsOutCondition(*operation)) {
            std::string_view const subject = subjectOf(*operation);
            std::string const name(subject.empty() ? operation->name : subject);
            kinds.push_back({name, std::string(operation->comment()), minor, disables(name)});
            operations.push_back(operation);
        }
    }
    faults_.emplace(inventory(), id(), kinds);
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        handedOut_[{operations[i]->classId, operations[i]->index}] =
            faults_->condition(kinds[i].name)->proxy().getOID().getIdString();
    }
    servant().on<&ApplicationObjectClient::getFaultSvc>([this] { return faults_->proxy(); });
}

void Managed::addAttributes()
{
    for (catalogue::Operation const* const operation : type().operations()) {
        if (!Attribute::isHandedOutBy(*operation)) {
            continue;
        }
        std::string const attribute = Attribute::idOf(*this, *operation);
        if (inventory().find(attribute) == nullptr) {
            attributes_.emplace_back(*this, *operation);
        }
        handedOut_[{operation->classId, operation->index}] = attribute;
    }
}

Managed::Managed(Inventory& inventory, std::string const& id, std::string_view className)
    : Object(inventory, id, className), properties_(*this, [this](catalogue::Operation const& operation) {
          return servant().serves(operation.classId, operation.index) ||
                 handedOut_.contains({operation.classId, operation.index});
      })
{
    if (isA(type(), reflect::className<ApplicationObjectClient>)) {
        addServices<ApplicationObjectClient>();
        addFaults();
        servant().on<&ApplicationObjectClient::hasLocationId>([] { return true; });
    } else if (isA(type(), reflect::className<AtmPersistentObjectClient>)) {
        addServices<AtmPersistentObjectClient>();
    }
    addAttributes();
    facts().add(properties_.facts());
    servant().otherwise([this](unsigned long classId, unsigned long opIndex, auto& request, auto& reply) {
        return handOut(classId, opIndex, reply) || answerByShape(classId, opIndex, request, reply);
    });
}

bool Managed::answerByShape(unsigned long classId, unsigned long opIndex, TipprmiStream& request, TipprmiStream& reply)
{
    if (!servant().isObserved(classId, opIndex)) {
        return properties_.answer(classId, opIndex, request, reply);
    }
    TipprmiStream given(100);
    given.marshall(request.data() + request.size() - request.available(), static_cast<int>(request.available()));
    std::size_t const begin = reply.size();
    bool const isAnswered = properties_.answer(classId, opIndex, request, reply);
    if (isAnswered && !request.hasUnmarshallingFailed()) {
        TipprmiStream told(100);
        told.marshall(reply.data() + begin, static_cast<int>(reply.size() - begin));
        servant().notifyObservers(classId, opIndex,
                                  catalogue::packParameters(*properties_.find(classId, opIndex), given, told));
    }
    return isAnswered;
}

bool Managed::handOut(unsigned long classId, unsigned long opIndex, TipprmiStream& reply) const
{
    auto const found = handedOut_.find({classId, opIndex});
    if (found == handedOut_.end()) {
        return false;
    }
    reply << TipprmiObjectClient(TipprmiOID(found->second));
    return true;
}

} // namespace trs::sim
