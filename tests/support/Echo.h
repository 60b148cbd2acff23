// An object that hands a call on to its like in another process.
#pragma once

#include "broker/Broker.h"
#include "broker/framework/QelOperations.h"
#include "rmi/Servant.h"

namespace support {

template <class Proxy>
Proxy boundTo(TreflectORB const* peer, TipprmiOID const& oid)
{
    Proxy proxy;
    proxy.TipprmiObjectClient::connect(peer, oid);
    return proxy;
}

// "Echo": set(n) calls set(n - 1) on the "Echo" of the other process and waits for it in its handler, down to 0.
class Echo {
public:
    explicit Echo(TreflectORB const* other)
    {
        servant_.on<&QelLongClient::set>(
            [other](long const& depth) { return depth == 0 || boundTo<QelLongClient>(other, "Echo").set(depth - 1); });
    }

private:
    Servant servant_{"Echo"};
};

} // namespace support
