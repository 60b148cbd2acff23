// The framework's value proxies over this platform's broker.
#include "broker/framework/QelOperations.h"
#include "rmi/Call.h"
#include "rmi/Dispatch.h"
#include "rmi/MetaObject.h"

namespace {

// Made when the program starts, as those of all proxies, so that they are found by name.
template <class Proxy>
ProxyMetaObject<Proxy> metaOf;

} // namespace

TreflectMetaObject* QelBaseClient::staticMeta() { return metaOf<QelBaseClient>.completed(); }
TreflectMetaObject* QelLongClient::staticMeta() { return metaOf<QelLongClient>.completed(); }
TreflectMetaObject* QelShortClient::staticMeta() { return metaOf<QelShortClient>.completed(); }
TreflectMetaObject* QelFabricBaseClient::staticMeta() { return metaOf<QelFabricBaseClient>.completed(); }
TreflectMetaObject* QelPersistentObjectClient::staticMeta() { return metaOf<QelPersistentObjectClient>.completed(); }

bool QelBaseClient::isReadonly() const { return call<&QelBaseClient::isReadonly>(*this); }
bool QelBaseClient::isPersistent() const { return call<&QelBaseClient::isPersistent>(*this); }
bool QelBaseClient::isReplicated() const { return call<&QelBaseClient::isReplicated>(*this); }
bool QelBaseClient::isInitialised() const { return call<&QelBaseClient::isInitialised>(*this); }
long QelBaseClient::getInitStatus() const { return call<&QelBaseClient::getInitStatus>(*this); }
void QelBaseClient::clear() const { return call<&QelBaseClient::clear>(*this); }
void QelBaseClient::internalClear() const { return call<&QelBaseClient::internalClear>(*this); }

long QelLongClient::get() const { return call<&QelLongClient::get>(*this); }
bool QelLongClient::set(long const& value) const { return call<&QelLongClient::set>(*this, value); }
long QelLongClient::internalGet() const { return call<&QelLongClient::internalGet>(*this); }
bool QelLongClient::internalSet(long const& value) const { return call<&QelLongClient::internalSet>(*this, value); }

short QelShortClient::get() const { return call<&QelShortClient::get>(*this); }
bool QelShortClient::set(short const& value) const { return call<&QelShortClient::set>(*this, value); }
short QelShortClient::internalGet() const { return call<&QelShortClient::internalGet>(*this); }
bool QelShortClient::internalSet(short const& value) const { return call<&QelShortClient::internalSet>(*this, value); }

unsigned long QelFabricBaseClient::getSize() const { return call<&QelFabricBaseClient::getSize>(*this); }
TipprmiSequence<std::string> QelFabricBaseClient::getIndexes() const
{
    return call<&QelFabricBaseClient::getIndexes>(*this);
}

void QelPersistentObjectClient::sendChangeEvent() const
{
    return call<&QelPersistentObjectClient::sendChangeEvent>(*this);
}
TipprmiSequence<std::string> QelPersistentObjectClient::serialise() const
{
    return call<&QelPersistentObjectClient::serialise>(*this);
}
bool QelPersistentObjectClient::deserialise(TipprmiSequence<std::string> const& content) const
{
    return call<&QelPersistentObjectClient::deserialise>(*this, content);
}

// A value held in memory: always initialised, never stored, its default 0.
bool QelLongSkeleton::dispatch(bool, unsigned long classId, unsigned long opIndex, TipprmiStream& request,
                               TipprmiStream& reply)
{
    auto const answer = [&]<auto Member>(auto const& function) {
        using Row = OperationRow<Member>;
        constexpr unsigned long rowClass = operationClassId<Member>;
        if (classId != rowClass || opIndex != Row::index) {
            return false;
        }
        using Callable = road::CallableOf<Row>;
        road::serve(Callable::shape, Callable::of(function), *this, rowClass, opIndex, request, reply);
        return true;
    };
    auto const read = [this] { return get(); };
    auto const write = [this](long const& value) { return set(value); };
    auto const reset = [this] { set(0); };
    auto const yes = [] { return true; };
    auto const no = [] { return false; };
    auto const zero = [] { return 0L; };
    return answer.operator()<&QelLongClient::get>(read) || answer.operator()<&QelLongClient::set>(write) ||
           answer.operator()<&QelLongClient::internalGet>(read) ||
           answer.operator()<&QelLongClient::internalSet>(write) || answer.operator()<&QelBaseClient::isReadonly>(no) ||
           answer.operator()<&QelBaseClient::isPersistent>(no) || answer.operator()<&QelBaseClient::isReplicated>(no) ||
           answer.operator()<&QelBaseClient::isInitialised>(yes) ||
           answer.operator()<&QelBaseClient::getInitStatus>(zero) || answer.operator()<&QelBaseClient::clear>(reset) ||
           answer.operator()<&QelBaseClient::internalClear>(reset);
}
