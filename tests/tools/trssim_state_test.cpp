// A unit that is held in a file: killed at any moment, it comes back as it was last told.
#include "tests/support/Programs.h"

#include "broker/CallFailure.h"
#include "catalogue/SimulatorClient.h"
#include "catalogue/Value.h"
#include "clients/ip/EthLinkClient.h"
#include "clients/ip/IpNodeClient.h"
#include "clients/services/ConditionClient.h"
#include "rmi/TreflectHandlerState.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <random>
#include <thread>

namespace {

using Json = trs::catalogue::Value;

// What one client has told the unit: what was answered, and what may have been carried out without an answer.
template <class T>
class Told {
public:
    explicit Told(T first) : acknowledged_(first) {}

    T const& value() const { return acknowledged_; }
    // A call that sets this has been made. False when it has failed, and no other is to be made.
    bool note(T const& wanted, bool isDone)
    {
        if (isDone) {
            acknowledged_ = wanted;
            possible_.reset();
        } else if (trs::lastCallFailure().carriedOut != trs::CallFailure::CarriedOut::no) {
            possible_ = wanted;
        }
        return isDone;
    }
    // The unit tells this after it came back.
    void check(T const& told)
    {
        EXPECT_TRUE(told == acknowledged_ || (possible_ && told == *possible_))
            << told << " was neither acknowledged, as " << acknowledged_ << ", nor sent last";
        acknowledged_ = told;
        possible_.reset();
    }

private:
    T acknowledged_;
    std::optional<T> possible_;
};

// Changes things of its own until a call fails.
class Client {
public:
    Client(int number, std::atomic<unsigned long>& answers)
        : answers_(answers), entry_("client-" + std::to_string(number)),
          interface_(TipprmiOID(number % 2 == 0 ? "IfNet/Transport" : "IfNet/Lmp")),
          vlan_(static_cast<unsigned short>(1000 + number)),
          cable_(TipprmiOID(std::string("HwmUnit-1/") + (number % 2 == 0 ? "EthLink" : "LmpLink") + "/Condition/LOC"))
    {
    }

    void run()
    {
        TreflectHandlerState const running;
        while (setEntry() && setMtu() && changeVlan() && changeCable()) {
        }
    }
    void check()
    {
        TreflectHandlerState const running;
        TipprmiArray<short, 4> address{};
        TipprmiArray<short, 4> second{};
        unsigned long number = 0;
        std::string text;
        node_.getIpConfig(entry_, address, second, number, text);
        number_.check(number);
        EXPECT_EQ(text, number == 0 ? "" : std::to_string(number)) << "one half of a change";
        long mtu = 0;
        EXPECT_EQ(interface_.getMtu(mtu), GetClient::OK);
        mtu_.check(mtu);
        VlanIfNetClient vlan;
        hasVlan_.check(transport_.getVlanIfNet(vlan_, vlan) == RunClient::OK);
        isLost_.check(cable_.isActive());
        unsigned short flags = 0;
        EXPECT_EQ(interface_.getFlags(flags), GetClient::OK);
        EXPECT_EQ((flags & IfNetClient::IFF__RUNNING) == 0, isLost_.value()) << "a cause without its effect";
    }
    bool isLost() const { return isLost_.value(); }

private:
    bool count(bool isDone)
    {
        answers_ += isDone ? 1 : 0;
        return isDone;
    }
    bool setEntry()
    {
        unsigned long const next = number_.value() + 1;
        bool const isDone = node_.setIpConfig(entry_, {}, {}, next, std::to_string(next)) == SetClient::OK;
        return count(number_.note(next, isDone));
    }
    bool setMtu()
    {
        long const next = 1000 + (mtu_.value() + 1) % 500;
        return count(mtu_.note(next, interface_.setMtu(next) == SetClient::OK));
    }
    bool changeVlan()
    {
        VlanIfNetClient::VlanIfNetCreateParams params{};
        params.vlanId = vlan_;
        params.committedInfoRate = 10000;
        params.vlanInstanceId = 1;
        VlanIfNetClient created;
        bool const isDone = hasVlan_.value() ? transport_.deleteVlan(vlan_) == RunClient::OK
                                             : transport_.createVlan(params, created) == RunClient::OK;
        return count(hasVlan_.note(!hasVlan_.value(), isDone));
    }
    bool changeCable()
    {
        bool const isDone = (isLost_.value() ? cable_.cancel() : cable_.raise()) == RunClient::OK;
        return count(isLost_.note(!isLost_.value(), isDone));
    }

    std::atomic<unsigned long>& answers_;
    std::string const entry_;
    IpNodeClient const node_{TipprmiOID(IpNodeClient::IPNODE_OID)};
    EthIfNetClient const transport_{TipprmiOID("IfNet/Transport")};
    IfNetClient const interface_;
    unsigned short const vlan_;
    ConditionClient const cable_;
    Told<unsigned long> number_{0};
    Told<long> mtu_{1500};
    Told<bool> hasVlan_{false};
    Told<bool> isLost_{false};
};

class TrssimState : public ProgramTest {
protected:
    TrssimState() { peerAt(endpoint); }

    Unit start() { return unit({"--clock", "stepped", "--address", "10.0.0.7", "--state", path + ".state"}); }
    // What the unit holds but for what clients change.
    static std::string rest()
    {
        TreflectHandlerState const running;
        std::string text;
        EXPECT_EQ(simulator().getScenario(text), GetClient::OK);
        Json document = Json::parse(text, nullptr, false);
        Json& objects = document["objects"];
        for (char const* const name : {"EthIfNet:IfNet/Transport", "EthIfNet:IfNet/Lmp"}) {
            objects[name].erase("getMtu");
        }
        objects["IpNode:IpNode"].erase("getIpConfig");
        std::vector<std::string> vlans;
        for (auto const& [name, facts] : objects.items()) {
            if (name.find("/Vlan/10") != std::string::npos && name.find("/Vlan/100/") == std::string::npos &&
                !name.ends_with("/Vlan/100")) {
                vlans.push_back(name);
            }
        }
        for (std::string const& name : vlans) {
            objects.erase(name);
        }
        std::vector<std::string> sorted; // objects may have been created in another order
        for (auto const& [name, facts] : objects.items()) {
            sorted.push_back(name + ' ' + facts.dump());
        }
        std::ranges::sort(sorted);
        document["objects"] = sorted;
        return document.dump();
    }
    static SimulatorClient simulator() { return SimulatorClient(TipprmiOID(SimulatorClient::SIMULATOR_OID)); }
    static void execute(std::string const& command, std::string& output)
    {
        TreflectHandlerState const running;
        std::string wrong;
        EXPECT_EQ(simulator().execute(command, output, wrong), RunClient::OK) << command << ": " << wrong;
    }
    ~TrssimState() override
    {
        for (char const* const part : {"", "-wal", "-shm"}) {
            std::filesystem::remove(path + ".state" + part);
        }
    }
};

// As many rounds as TRSMAN_KILLS says (scripts/kill-trial), else some.
TEST_F(TrssimState, ComesBackAsItWasLastToldHoweverOftenItIsKilled)
{
    char const* const wanted = std::getenv("TRSMAN_KILLS"); // NOLINT(concurrency-mt-unsafe): no other thread yet
    int const kills = wanted != nullptr ? std::atoi(wanted) : 60;
    std::atomic<unsigned long> answers = 0;
    std::vector<Client> clients;
    clients.reserve(2);
    for (int number = 0; number < 2; ++number) {
        clients.emplace_back(number, answers);
    }
    std::array<char const*, 2> const links{"HwmUnit-1/EthLink", "HwmUnit-1/LmpLink"};
    std::mt19937 random(7);
    std::string atFirst;
    unsigned long changes = 0;
    for (int round = 0; round <= kills; ++round) {
        Unit sim = start();
        std::string output;
        for (Client& client : clients) {
            client.check();
        }
        for (char const* const link : links) {
            execute(std::string("cable back ") + link, output);
        }
        std::string const now = rest();
        atFirst = atFirst.empty() ? now : atFirst;
        EXPECT_EQ(now, atFirst) << "what nobody asked for";
        for (std::size_t i = 0; i < clients.size(); ++i) {
            if (clients[i].isLost()) {
                execute(std::string("cable lost ") + links[i], output);
            }
        }
        if (HasFailure() || round == kills) {
            break;
        }
        answers = 0;
        std::vector<std::thread> threads;
        for (Client& client : clients) {
            threads.emplace_back([&client] { client.run(); });
        }
        unsigned long const enough = 1 + random() % 200;
        while (answers < enough && sim.readLine()) {
        } // as the unit says what happens to it
        sim.signal(SIGKILL);
        for (std::thread& thread : threads) {
            thread.join();
        }
        sim.waitForExit();
        changes += answers;
    }
    std::printf("%d kills, %lu changes acknowledged\n", kills, changes);
}

} // namespace
