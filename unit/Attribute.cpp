#include "unit/Attribute.h"

#include "broker/framework/QelOperations.h"
#include "clients/transmission/PdhUnitClient.h"
#include "clients/transmission/TransmissionPortClient.h"

#include <algorithm>

namespace trs::sim {

namespace {

constexpr std::string_view get = "get";

bool isOf(catalogue::Operation const& operation, std::string_view className)
{
    return operation.result != nullptr && operation.result->name == className;
}

} // namespace

void serveValueObject(Servant& servant, std::function<void()> const& clear)
{
    servant.on<&QelBaseClient::isReadonly>([] { return false; })
        .on<&QelBaseClient::isPersistent>([] { return false; })
        .on<&QelBaseClient::isReplicated>([] { return false; })
        .on<&QelBaseClient::isInitialised>([] { return true; })
        .on<&QelBaseClient::getInitStatus>([] { return 0L; })
        .on<&QelBaseClient::clear>(clear)
        .on<&QelBaseClient::internalClear>(clear);
}

bool Attribute::isHandedOutBy(catalogue::Operation const& operation)
{
    return operation.parameters.empty() && operation.name.starts_with(get) &&
           (isOf(operation, reflect::className<QelLongClient>) || isOf(operation, reflect::className<QelShortClient>));
}

std::string Attribute::idOf(Object const& owner, catalogue::Operation const& reader)
{
    std::string const& id = owner.id();
    std::string const subject(reader.name.substr(get.size()));
    for (std::size_t end = id.find('/'); end != std::string::npos; end = id.find('/', end + 1)) {
        Object const* const outer = owner.inventory().find(id.substr(0, end));
        catalogue::Operation const* const same = outer != nullptr ? outer->type().find(reader.name) : nullptr;
        if (same != nullptr && same->result == reader.result) {
            return outer->id() + '/' + subject;
        }
    }
    return id + '/' + subject;
}

Attribute::Kind Attribute::kindOf(Object const& owner, catalogue::Operation const& reader)
{
    if (reader.name == operationOf<&TransmissionPortClient::getPathType>().name) {
        using Port = TransmissionPortClient;
        bool const isPdh = owner.id().starts_with("Pdh");
        return {isPdh ? Port::E1 : Port::STM0,
                {Port::STM0, Port::STM1, Port::STS1, Port::STS3C, Port::STM1_VC11, Port::STM1_VC12, Port::STS3C_VC11,
                 Port::E1, Port::T1, Port::JT1, Port::JT2}};
    }
    if (reader.name == operationOf<&PdhUnitClient::getZqBitPosition>().name) {
        using Pdh = PdhUnitClient;
        return {Pdh::ZQ_TS0_BIT_5,
                {Pdh::ZQ_TS0_BIT_5, Pdh::ZQ_TS0_BIT_6, Pdh::ZQ_TS0_BIT_7, Pdh::ZQ_TS0_BIT_8, Pdh::ZQ_TS0_BIT_5_6,
                 Pdh::ZQ_TS0_BIT_7_8, Pdh::ZQ_TS0_BIT_5_TO_8, Pdh::ZQ_TS16}};
    }
    return {};
}

template <class Client, class T>
void Attribute::serve(T& value)
{
    auto const set = [this, &value](T const& wanted) {
        bool const isOne = kind_.values.empty() || std::ranges::find(kind_.values, long{wanted}) != kind_.values.end();
        value = isOne ? wanted : value;
        return isOne;
    };
    object_.servant()
        .on<&Client::get>([&value] { return value; })
        .template on<&Client::internalGet>([&value] { return value; })
        .template on<&Client::set>(set)
        .template on<&Client::internalSet>(set);
    serveValueObject(object_.servant(), [this, &value] { value = static_cast<T>(kind_.initial); });
    object_.facts().addTold<&Client::get>(value, set);
}

Attribute::Attribute(Object& owner, catalogue::Operation const& reader)
    : kind_(kindOf(owner, reader)), object_(owner.inventory(), idOf(owner, reader), reader.result->name)
{
    if (isOf(reader, reflect::className<QelLongClient>)) {
        serve<QelLongClient>(long_);
    } else {
        serve<QelShortClient>(short_);
    }
}

} // namespace trs::sim
