// peer ENDPOINT [OTHER]: a process with a value, an object that never answers, and one that calls its like at OTHER.
#include "broker/framework/QelOperations.h"
#include "rmi/Servant.h"
#include "tests/support/Echo.h"

#include <cstdio>
#include <unistd.h>

int main(int argc, char** argv)
{
    if (argc < 2) {
        return 2;
    }
    trs::Broker& broker = trs::Broker::instance();
    TreflectORB const* other = nullptr;
    if (argc > 2) {
        broker.addPeer(argv[2], &other);
    }
    Servant value{"Value"};
    value.on<&QelLongClient::set>([](long const&) { return true; });
    Servant mute{"Mute"};
    mute.on<&QelLongClient::get>([]() -> long {
        std::puts("called");
        std::fflush(stdout);
        for (;;) {
            ::pause();
        }
    });
    support::Echo const echo(other);
    if (std::string const why = broker.serve(argv[1]); !why.empty()) {
        std::puts(why.c_str());
        return 1;
    }
    std::puts("ready");
    std::fflush(stdout);
    char byte = 0;
    while (::read(STDIN_FILENO, &byte, 1) > 0) {
    }
}
