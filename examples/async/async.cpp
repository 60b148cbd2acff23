// Asks a unit for many things at once, in four ways: by a function that is called, by a future, by a coroutine, and all
// of a list with a limit to how many are on their way.
#include "broker/Broker.h"
#include "broker/Gather.h"
#include "clients/ip/IpNodeClient.h"

#include <asio/co_spawn.hpp>
#include <asio/detached.hpp>
#include <asio/io_context.hpp>
#include <asio/use_awaitable.hpp>
#include <asio/use_future.hpp>

#include <chrono>
#include <cstdio>
#include <future>
#include <string>
#include <vector>

namespace {

using namespace std::chrono_literals;

asio::awaitable<void> showByCoroutine(IpNodeClient node)
{
    auto const [status, mtu] =
        co_await trs::asyncCall<&IpNodeClient::getMtu>(node, trs::bindDeadline(2s, asio::use_awaitable));
    std::printf("by a coroutine: MTU %ld\n", mtu);
}

} // namespace

int main(int argc, char** argv)
{
    char const* const unit = argc > 1 ? argv[1] : "unix:/tmp/trssim.sock";
    if (std::string const why = trs::Broker::instance().addPeer(unit); !why.empty()) {
        std::fprintf(stderr, "%s\n", why.c_str());
        return 1;
    }
    IpNodeClient const node{TipprmiOID(IpNodeClient::IPNODE_OID)};

    std::promise<bool> told;
    trs::asyncCall<&IpNodeClient::getMtu>(node, [&told](std::error_code error, auto const& reply) {
        if (error) {
            std::fprintf(stderr, "%s\n", error.message().c_str());
        } else {
            std::printf("by a function: MTU %ld\n", reply.template out<0>());
        }
        told.set_value(!error);
    });
    if (!told.get_future().get()) {
        return 1;
    }

    auto const transport = trs::asyncCall<&IpNodeClient::getTransportIfNet>(node, asio::use_future).get().out<0>();
    std::printf("by a future: the transport interface is '%s'\n", transport.getOID().getIdString().c_str());

    asio::io_context context;
    asio::co_spawn(context, showByCoroutine(node), asio::detached);
    context.run();

    std::vector<IfNetClient> interfaces{transport};
    for (VlanIfNetClient const& vlan : transport.getVlanIfNetFabric().retrieveAll()) {
        interfaces.push_back(vlan);
    }
    auto const all = trs::valueOf(trs::gather<&IfNetClient::getMtu>(interfaces, 16, asio::use_future));
    for (std::size_t i = 0; i < all.size(); ++i) {
        std::printf("all of a list: '%s' %s\n", interfaces[i].getOID().getIdString().c_str(),
                    all[i].error ? all[i].error.message().c_str() : std::to_string(all[i].reply.out<0>()).c_str());
    }
    return 0;
}
