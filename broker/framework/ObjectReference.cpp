// How proxies travel.
#include "broker/objects/StubTable.h"
#include "platform/TipprmiObjectClient.h"
#include "platform/TipprmiStream.h"
#include "platform/TreflectServerObject.h"
#include "rmi/ByteOrder.h"

TipprmiStream& operator<<(TipprmiStream& stream, TipprmiObjectClient const& object)
{
    // Whoever is given the reference must be able to call the object.
    if (TreflectServerObject* const server = object.getStub_()->localServer()) {
        server->activate();
    }
    TipprmiOID const& oid = object.getOID();
    std::string const& id = oid.getIdString();
    unsigned char* const place = stream.extend(8 + id.size());
    wire::store(place, static_cast<std::uint32_t>(oid.getNamespace().value()));
    wire::store(place + 4, static_cast<std::uint32_t>(id.size()));
    std::memcpy(place + 8, id.data(), id.size());
    return stream;
}

TipprmiStream& operator>>(TipprmiStream& stream, TipprmiObjectClient& object)
{
    unsigned char const* const space = stream.take(4);
    unsigned char const* const length = stream.take(4);
    unsigned char const* const id = length != nullptr ? stream.take(wire::load<std::uint32_t>(length)) : nullptr;
    if (id == nullptr) {
        return stream;
    }
    TreflectORB const* const origin = stream.origin();
    TreflectStubRef stub = trs::StubTable::instance().find(
        stream.isOriginExclusive() ? origin : nullptr, NamespaceId(wire::load<std::uint32_t>(space)),
        std::string_view(reinterpret_cast<char const*>(id), wire::load<std::uint32_t>(length)));
    if (!stream.isOriginExclusive() && origin != nullptr && stub->home() == nullptr) {
        stub->setHome(origin);
    }
    object.stub_ = stub;
    return stream;
}
