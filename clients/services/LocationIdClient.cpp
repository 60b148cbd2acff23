#include "clients/services/LocationIdSkeleton.h"
#include "platform/NmaLogHelper.h"
#include "rmi/StreamOperators.h"
#include "rmi/TypedSkeleton.h"

template class TypedSkeleton<LocationIdSkeleton, LocationIdClient>;

bool TipprmiStream::hasUnmarshallingFailed() const { return failed_; }

void TipprmiStream::printUnmarshallError(unsigned long classId, unsigned long opIndex) const
{
    LogDispatch(4, LogMakeString("Unmarshall error on cc=0x%X, mc=%d", static_cast<unsigned>(classId),
                                 static_cast<int>(opIndex)));
}

LocationIdClient::~LocationIdClient() = default;

namespace {

// The whole road of one call, spelled out with the framework's primitives: it is what ClientCallHelper does for every
// other proxy.
template <auto Member, class... In>
auto spelledOut(LocationIdClient const& proxy, In const&... in)
{
    using Row = OperationRow<Member>;
    constexpr unsigned long classId = operationClassId<Member>;
    typename Row::Signature::Result result{};

    TreflectServerObject* const server = proxy.getStub_()->getLocalServer();
    if (server != nullptr && server->implements(classId)) {
        result = (static_cast<LocationIdSkeleton*>(server)->*Row::skeletonMember)(in...);
        return result;
    }

    TipprmiStream request(100);
    TipprmiStream reply(100);
    TipprmiStream& arguments = proxy.prepareRequestStream_(true, classId, Row::index, request);
    static_cast<void>((arguments << ... << in));
    if (proxy.dispatch(true, classId, Row::index, request, reply)) {
        proxy.prepareResponseStream_(true, reply) >> result;
        if (reply.hasUnmarshallingFailed()) {
            reply.printUnmarshallError(classId, Row::index);
        }
    }
    return result;
}

} // namespace

std::string LocationIdClient::toString() const { return spelledOut<&LocationIdClient::toString>(*this); }
std::string LocationIdClient::toKey() const { return spelledOut<&LocationIdClient::toKey>(*this); }
bool LocationIdClient::containsType(unsigned long const& type) const
{
    return spelledOut<&LocationIdClient::containsType>(*this, type);
}
bool LocationIdClient::equals(LocationIdClient const& other) const
{
    return spelledOut<&LocationIdClient::equals>(*this, other);
}
