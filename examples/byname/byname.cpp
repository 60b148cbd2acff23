// Calls an operation that is known by name only, at run time: byname unix:/tmp/trssim.sock IpNode getMtu
#include "broker/Broker.h"
#include "catalogue/Call.h"
#include "catalogue/Json.h"
#include "catalogue/ObjectName.h"
#include "rmi/TreflectHandlerState.h"

#include <cstdio>

namespace catalogue = trs::catalogue;

int main(int argc, char** argv)
{
    catalogue::ObjectName name;
    if (argc != 4 || !catalogue::ObjectName::parse(argv[2], name).empty()) {
        std::puts("byname UNIT OBJECT OPERATION");
        return 2;
    }
    catalogue::Class const* const type = catalogue::findClass(name.className);
    catalogue::Operation const* const operation = type != nullptr ? type->find(argv[3]) : nullptr;
    if (operation == nullptr) {
        std::puts("there is no such operation");
        return 2;
    }
    trs::Broker::instance().addPeer(argv[1]);
    TreflectHandlerState const running;
    catalogue::Outcome const outcome = catalogue::call(TipprmiObjectClient(TipprmiOID(name.id)), *operation, {});
    bool const isDone = outcome.kind == catalogue::Outcome::Kind::done;
    std::printf("%s\n%s\n", operation->signature().c_str(),
                isDone ? catalogue::toJson(outcome.results, -1).c_str() : outcome.failure.text().c_str());
    return isDone ? 0 : 1;
}
