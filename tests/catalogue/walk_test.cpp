// Walks over objects: which calls they consist of, and who makes them.
#include "catalogue/Walk.h"
#include "clients/ip/IpNodeClient.h"
#include "rmi/Servant.h"
#include "rmi/TreflectHandlerState.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <set>

namespace {

using testing::Contains;
using testing::ElementsAre;
using trs::catalogue::Outcome;
using trs::catalogue::Value;
using trs::catalogue::Walk;

// What the objects of a made-up unit refer to, by object and operation; everything else tells nothing of interest.
using Told = std::map<std::string, std::string>;

Told const loop = {
    {"IpNode getLMPIfNet", "EthIfNet:A"},  {"IpNode getTransportIfNet", "IfNet:B"},       // which is more
    {"A getActiveLink", "EthLink:Link"},   {"Link getConsumerIf", "ApplicationObject:B"}, // and less
    {"Link getProviderIf", "VlanIfNet:B"}, {"B getConsumerIf", "ApplicationObject:IpNode"},
};

Outcome outcomeOf(Told const& told, Walk::Call const& call)
{
    Outcome outcome;
    auto const found = told.find(call.object->name.id + ' ' + std::string(call.operation->name));
    outcome.kind = found != told.end() ? Outcome::Kind::done : Outcome::Kind::refused;
    if (found != told.end()) {
        std::vector<std::string_view> const names = call.operation->parameterNames();
        outcome.results[names.empty() ? "result" : std::string(names[0])] = found->second;
    }
    return outcome;
}

// Makes the calls, as many of them under way as `most`, and answered in an order that chance decides.
std::vector<std::string> called(Walk& walk, Told const& told, std::size_t most, unsigned seed)
{
    std::mt19937 chance(seed);
    std::vector<std::string> made;
    std::vector<Walk::Call> underWay;
    for (;;) {
        while (underWay.size() < most) {
            std::optional<Walk::Call> const call = walk.next();
            if (!call) {
                break;
            }
            made.push_back(call->object->name.id + ' ' + std::string(call->operation->name));
            underWay.push_back(*call);
        }
        if (underWay.empty()) {
            return made;
        }
        std::swap(underWay[chance() % underWay.size()], underWay.back());
        walk.answer(underWay.back(), outcomeOf(told, underWay.back()));
        underWay.pop_back();
    }
}

std::vector<std::string> names(Walk const& walk)
{
    std::vector<std::string> all;
    for (Walk::Object const& object : walk.objects()) {
        all.push_back(object.name.text() + ' ' + std::to_string(object.depth) +
                      (object.via != nullptr ? ' ' + object.from->name.id + '.' + std::string(object.via->name) : ""));
    }
    std::ranges::sort(all);
    return all;
}

TEST(Walks, ComeToEachObjectOnceByTheShortestWay)
{
    std::vector<std::string> first;
    for (std::size_t const most : {1U, 2U, 7U, 1000U}) {
        for (unsigned seed = 0; seed < 20; ++seed) {
            Walk walk;
            walk.begin({"IpNodeClient", "IpNode"});
            std::vector<std::string> made = called(walk, loop, most, seed);
            EXPECT_THAT(names(walk), ElementsAre("EthIfNet:A 1 IpNode.getLMPIfNet", "EthLink:Link 2 A.getActiveLink",
                                                 "IpNode:IpNode 0", "VlanIfNet:B 1 IpNode.getTransportIfNet"))
                << most << ' ' << seed;
            std::ranges::sort(made);
            EXPECT_EQ(std::ranges::adjacent_find(made), made.end()) << "no call is made twice";
            EXPECT_THAT(made, Contains("B getVlanId")) << "which only the more derived class has";
            first = first.empty() ? made : first;
            EXPECT_EQ(made, first) << most << ' ' << seed;
        }
    }
}

TEST(Walks, EndAtTheirDepthAndNumberOfObjects)
{
    Walk shallow({.depth = 1});
    shallow.begin({"IpNodeClient", "IpNode"});
    EXPECT_THAT(called(shallow, loop, 1, 0), Not(Contains(testing::StartsWith("A "))));
    EXPECT_EQ(shallow.objects().size(), 3U) << "objects at the end are met";
    Walk small({.mostObjects = 2});
    small.begin({"IpNodeClient", "IpNode"});
    called(small, loop, 5, 0);
    EXPECT_EQ(small.objects().size(), 2U);
    Walk unknown;
    unknown.begin({"Nonsense", "x"});
    EXPECT_FALSE(unknown.next());
    EXPECT_EQ(unknown.objects().front().type, nullptr);
}

TEST(Walks, CallUntilTheTimeIsOverOrTheVisitorHasEnough)
{
    TreflectHandlerState const running;
    Servant node(IpNodeClient::IPNODE_OID);
    int calls = 0;
    node.on<&IpNodeClient::getMtu>([&calls](long& mtu) {
        ++calls;
        mtu = 1500;
        return GetClient::OK;
    });
    node.otherwise([](auto...) { return true; }); // with a reply that is too short
    auto const visited = [](trs::catalogue::Visitor const& visitor, auto... end) {
        Walk walk;
        walk.begin({"IpNodeClient", IpNodeClient::IPNODE_OID});
        makeCalls(walk, visitor, end...);
        return walk.waiting();
    };
    Value mtu;
    EXPECT_EQ(visited([&mtu](trs::catalogue::Visit const& visit) {
                  mtu = visit.operation.name == "getMtu" ? visit.outcome.results["mtu"] : mtu;
                  return true;
              }),
              0U);
    EXPECT_EQ(mtu, 1500);
    EXPECT_EQ(calls, 1);
    EXPECT_GT(visited([](auto const&) { return false; }), 5U);
    EXPECT_GT(visited([](auto const&) { return true; }, std::chrono::steady_clock::now()), 5U);
    EXPECT_EQ(calls, 1);
}

} // namespace
