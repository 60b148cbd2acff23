// A test of management code, with a whole unit in its own process: no socket, no waiting.
#include "clients/ip/EthIfNetClient.h"
#include "unit/Unit.h"

#include <cstdio>

namespace {

// The code under test: whether an interface needs a person.
bool needsHelp(EthIfNetClient const& interface) { return interface.getDownIngress().isActive(); }

} // namespace

int main()
{
    trs::sim::Unit unit;
    EthIfNetClient const transport{TipprmiOID("IfNet/Transport")};
    bool const before = needsHelp(transport);
    transport.setFlags(0); // neither up nor running
    bool const after = needsHelp(transport);
    std::puts(!before && after ? "passed" : "failed");
    return !before && after ? 0 : 1;
}
