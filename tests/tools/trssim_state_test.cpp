// A unit that is held in a file: killed at any moment, it comes back as it was last told.
#include "tests/support/Programs.h"

#include "adapter/NmiRmiAdapterClient.h"
#include "broker/CallFailure.h"
#include "broker/objects/RunPermission.h"
#include "catalogue/SimulatorClient.h"
#include "catalogue/Value.h"
#include "clients/ip/EthLinkClient.h"
#include "clients/ip/IpNodeClient.h"
#include "clients/services/ConditionClient.h"
#include "clients/services/PerformanceServiceClient.h"
#include "rmi/TreflectHandlerState.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <sqlite3.h>
#include <thread>

namespace {

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
        } else if (trs::lastCallFailure().kind == trs::CallFailure::Kind::none) {
            ADD_FAILURE() << wanted << " is refused";
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
        params.shaperBurstSize = VlanIfNetClient::SBS_MIN;
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
        trs::catalogue::Value document = trs::catalogue::Value::parse(text, nullptr, false);
        trs::catalogue::Value& objects = document["objects"];
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

// What commands of standard input change is kept as well, and what is left of faults.
TEST_F(TrssimState, HasWhatCommandsChangedAndWhatIsLeftOfFaults)
{
    {
        Unit sim = start();
        sim.does("fault refuse operation=IpNode.getMtu count=2");
        sim.does("alarms refuse");
        sim.does("tick 1000");
        TreflectHandlerState const running;
        long mtu = 0;
        EXPECT_EQ(IpNodeClient(IpNodeClient::IPNODE_OID).getMtu(mtu), GetClient::FAILED);
        sim.signal(SIGKILL);
        sim.waitForExit();
    }
    // Nothing else has changed since: neither the fault nor a scenario begins anew.
    std::string const scenario = directory.file("scenario");
    std::ofstream(scenario) << R"({"objects": {"IpNode:IpNode": {"getMtu": {"mtu": 1300}}}})";
    Unit sim = unit({"--clock", "stepped", "--state", path + ".state", "--scenario", scenario});
    TreflectHandlerState const running;
    unsigned long seconds = 0;
    EXPECT_EQ(simulator().getTime(seconds), GetClient::OK);
    EXPECT_EQ(seconds, 1000U);
    EXPECT_FALSE(NmiRmiAdapterClient(NmiRmiAdapterClient::NMI_RMI_ADAPTER_SER_NAME).sendAlarmRmi({}));
    long mtu = 0;
    EXPECT_EQ(IpNodeClient(IpNodeClient::IPNODE_OID).getMtu(mtu), GetClient::FAILED);
    EXPECT_EQ(IpNodeClient(IpNodeClient::IPNODE_OID).getMtu(mtu), GetClient::OK);
    EXPECT_EQ(mtu, 1500);
}

// Who cannot be held in the file says why, and leaves the file as it is.
TEST_F(TrssimState, RefusesAFileThatIsNoneOfItsOwn)
{
    std::string const file = path + ".state";
    auto const refusal = [&] {
        ChildProcess sim(program("trssim"), {"--listen", endpoint + "-2", "--state", file});
        EXPECT_NE(sim.waitForExit(), 0);
        std::vector<std::string> const said = sim.readRest(ChildProcess::Stream::error);
        return said.empty() ? "" : said.front();
    };
    std::ofstream(file) << "no database, but a text that somebody needs";
    EXPECT_THAT(refusal(), testing::HasSubstr("cannot hold a unit's state"));
    std::ifstream kept(file);
    std::string text;
    EXPECT_TRUE(std::getline(kept, text));
    EXPECT_EQ(text, "no database, but a text that somebody needs");
    std::filesystem::remove(file);
    {
        Unit sim = start();
        EXPECT_THAT(refusal(), testing::HasSubstr("locked")) << "one process at a time";
        EXPECT_TRUE(sim.writeLine("stop"));
        EXPECT_EQ(sim.waitForExit(), 0);
    }
    auto const change = [&file](char const* sql) {
        sqlite3* database = nullptr;
        EXPECT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(database, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql;
        sqlite3_close(database);
    };
    change("UPDATE objects SET facts = '{' WHERE id = 'IpNode'");
    EXPECT_THAT(refusal(), testing::HasSubstr("is no JSON"));
    change("UPDATE objects SET facts = '{\"getMtu\": {\"mtu\": 5}}' WHERE id = 'IpNode'");
    EXPECT_THAT(refusal(), testing::HasSubstr("mtu: 5 is not"));
    change("PRAGMA user_version = 77");
    EXPECT_THAT(refusal(), testing::HasSubstr("is of version 77"));
    change("PRAGMA application_id = 1");
    EXPECT_THAT(refusal(), testing::HasSubstr("not of a simulated unit"));
}

// The processes of many units begin with the memory of one.
TEST_F(TrssimState, EachOfManyUnitsHasItsOwnSeedAndState)
{
    std::array<long, 3> counted{};
    for (bool const isFirst : {true, false}) {
        ChildProcess fleet(program("trssim"), {"--units", "3", "--listen", endpoint, "--clock", "stepped", "--seed",
                                               "7", "--state", path + ".state"});
        for (int i = 0; i < 3; ++i) {
            fleet.readUntil("ready on " + endpoint + "-");
        }
        TreflectHandlerState const running;
        for (std::size_t i = 0; i < counted.size(); ++i) {
            TreflectORB const* const peer = peerAt(endpoint + '-' + std::to_string(i + 1));
            IpNodeClient node;
            node.connect(peer, TipprmiOID(IpNodeClient::IPNODE_OID));
            SimulatorClient ownSimulator;
            ownSimulator.connect(peer, TipprmiOID(SimulatorClient::SIMULATOR_OID));
            PerformanceServiceClient counters;
            counters.connect(peer, TipprmiOID("IfNet/Transport/PerformanceService"));
            unsigned long value = 0;
            long mtu = 0;
            if (isFirst) {
                EXPECT_EQ(node.setMtu(1000 + static_cast<long>(i)), SetClient::OK);
                EXPECT_EQ(ownSimulator.advance(60), RunClient::OK);
                EXPECT_TRUE(counters.getCurrentData(1, value));
                counted[i] = static_cast<long>(value);
            }
            EXPECT_EQ(node.getMtu(mtu), GetClient::OK);
            EXPECT_EQ(mtu, 1000 + static_cast<long>(i));
            EXPECT_TRUE(counters.getCurrentData(1, value));
            EXPECT_EQ(static_cast<long>(value), counted[i]);
        }
        trs::RunPermissionPause const waiting;
        EXPECT_TRUE(fleet.writeLine("stop"));
        EXPECT_EQ(fleet.waitForExit(), 0);
    }
    EXPECT_TRUE(counted[0] != counted[1] && counted[1] != counted[2] && counted[0] != counted[2]);
    for (char const* const number : {"-1", "-2", "-3"}) {
        EXPECT_TRUE(std::filesystem::remove(path + ".state" + number));
    }
}

} // namespace
