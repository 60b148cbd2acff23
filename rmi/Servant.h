// An object served by naming the proxy's own operations.
#pragma once

#include "rmi/Dispatch.h"
#include "rmi/TreflectHandlerState.h"

#include <functional>
#include <map>
#include <memory>
#include <type_traits>
#include <utility>

//     Servant node{IpNodeClient::IPNODE_OID};
//     node.on<&IfNetClient::getMtu>([&](long& mtu) { mtu = 1500; return GetClient::OK; });
//
// An implementation that holds what it is asked for lends it, and spares the copy:
//
//     node.on<&IpNodeClient::getIfNets>([&](road::Lent<IfNets>& list) { list.lend(ifNets_); return GetClient::OK; });
//
// The compiler holds the implementation to the proxy's signature. Operations of several interfaces may be served by
// one object, as those of a class and its bases are. An operation that was not named is answered as unknown, unless
// otherwise() has somebody to ask.
//
// The object is reachable from construction to destruction. Both, and adding operations, take the run permission.
class Servant final : public TipprmiObjectSkeleton {
public:
    explicit Servant(TipprmiOID const& oid) : TipprmiObjectSkeleton(oid) { activate(); }
    // With an identifier of its own making.
    Servant() { activate(); }
    ~Servant() override
    {
        TreflectHandlerState const running;
        deactivate();
    }

    // Serves `Member` by `implementation`, in place of an earlier one.
    template <auto Member, class Implementation>
    Servant& on(Implementation implementation)
    {
        using Row = OperationRow<Member>;
        using Callable = road::CallableOf<Row>;
        static_assert(Callable::template isPlain<Implementation> || Callable::template isLending<Implementation>,
                      "the implementation does not have the operation's signature");
        TreflectHandlerState const running;
        operations_[{operationClassId<Member>, Row::index}] =
            std::make_shared<Typed<Row, Implementation>>(std::move(implementation));
        return *this;
    }

    // Has operations that were not named answered by `other`, which gets what dispatch() gets but for the flag.
    using Other =
        std::function<bool(unsigned long classId, unsigned long opIndex, TipprmiStream& request, TipprmiStream& reply)>;
    Servant& otherwise(Other other)
    {
        TreflectHandlerState const running;
        other_ = std::move(other);
        return *this;
    }

    // Has `other` asked first, about every operation, named or not.
    Servant& instead(Other other)
    {
        TreflectHandlerState const running;
        first_ = std::move(other);
        return *this;
    }

    // Whether the operation was named.
    bool serves(unsigned long classId, unsigned long opIndex) const { return operations_.contains({classId, opIndex}); }

    bool dispatch(bool, unsigned long classId, unsigned long opIndex, TipprmiStream& request,
                  TipprmiStream& reply) override
    {
        if (first_ && first_(classId, opIndex, request, reply)) {
            return true;
        }
        auto const found = operations_.find({classId, opIndex});
        if (found == operations_.end()) {
            return other_ && other_(classId, opIndex, request, reply);
        }
        std::shared_ptr<Served> const served = found->second; // it may be replaced while it runs
        road::serve(served->shape, served->implementation, *this, classId, opIndex, request, reply);
        return true;
    }

private:
    struct Served {
        Served(CallShape const& itsShape, road::Implementation itsImplementation)
            : shape(itsShape), implementation(itsImplementation)
        {
        }
        Served(Served const&) = delete;
        Served& operator=(Served const&) = delete;
        virtual ~Served() = default;
        CallShape const& shape;
        road::Implementation implementation;
    };
    template <class Row, class Function>
    struct Typed final : Served {
        explicit Typed(Function itsFunction)
            : Served(road::CallableOf<Row>::shape, road::CallableOf<Row>::of(function)),
              function(std::move(itsFunction))
        {
        }
        Function function;
    };

    std::map<std::pair<unsigned long, unsigned long>, std::shared_ptr<Served>> operations_;
    Other first_;
    Other other_;
};
