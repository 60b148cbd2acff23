// trswalk: says what objects a unit has.
#include "platform/host/Broker.h"
#include "rmi/TreflectHandlerState.h"
#include "tools/support/CommandLine.h"
#include "tools/trswalk/Walk.h"

#include <chrono>
#include <cstdio>

namespace {

constexpr char const* description = "Walks the objects of a unit from the IP node down: interfaces, VLANs, routes and "
                                    "hardware, and says each with its\n"
                                    "class, its identifier and some of its values.";

constexpr int notReached = 1;

} // namespace

int main(int argc, char** argv)
{
    std::string unit = tools::CommandLine::defaultEndpoint();
    int timeout = 5000;
    tools::CommandLine line("trswalk", description, 3);
    line.add(tools::CommandLine::unitOption(unit));
    line.add(tools::CommandLine::timeoutOption(timeout));
    if (std::optional<int> const code = line.parse(argc, argv)) {
        return *code;
    }

    host::Broker& broker = host::Broker::instance();
    host::Broker::setDeadline(std::chrono::milliseconds(timeout));
    if (std::string const why = broker.addPeer(unit); !why.empty()) {
        std::fprintf(stderr, "%s\n", why.c_str());
        return notReached;
    }
    TreflectHandlerState const running;
    if (!Walk().run()) {
        std::fprintf(stderr, "no IP node can be reached at %s\n", unit.c_str());
        return notReached;
    }
    return 0;
}
