// Calls to objects of the same process: typed skeletons, servants, and objects of another class than the proxy's.
#include "broker/framework/QelOperations.h"
#include "clients/services/AdminStateSkeleton.h"
#include "clients/services/ConditionSkeleton.h"
#include "clients/services/FaultServiceSkeleton.h"
#include "clients/services/LocationIdSkeleton.h"
#include "clients/services/PerformanceServiceSkeleton.h"
#include "platform/TreflectObserver.h"
#include "rmi/Servant.h"
#include "tests/support/GoldenRecord.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>

namespace {

using Adapted = TipprmiSequence<PerformanceServiceClient::IdentData_t>;
using History = TipprmiArray<unsigned long, 96>;

// Notes what is called, with the places of the arguments, and whether the call came as a message.
class Monitor final : public PerformanceServiceSkeleton {
public:
    Monitor() = default;
    explicit Monitor(TipprmiOID const& oid) : PerformanceServiceSkeleton(oid) {}

    std::string called;
    std::vector<void const*> places;
    int messages = 0;

    bool getCurrentData(unsigned long const& id, unsigned long& value) override
    {
        value = id + 1;
        return note(__func__, id, value);
    }
    bool getHistoricData(unsigned long const& id, unsigned long& count, History& history) override
    {
        count = id;
        history[95] = id + 1;
        return note(__func__, id, count, history);
    }
    bool getAdapterData(TipprmiSequence<unsigned long> const& ids, Adapted& data) override
    {
        data.setLength(ids.getLength());
        return note(__func__, ids, data);
    }
    bool getElapsedTime(unsigned long& elapsed) override { return note(__func__, elapsed); }
    bool existMonitoring(unsigned long const& id, bool& exists) override { return note(__func__, id, exists); }
    bool startMonitoring(unsigned long const& id, bool& done) override { return note(__func__, id, done); }
    bool stopMonitoring(unsigned long const& id, bool& done) override { return note(__func__, id, done); }
    bool resetMonitoring(bool& done) override { return note(__func__, done); }
    void trigger(std::string const& name, TipprmiSequence<unsigned long> const& ids,
                 unsigned long const& value) override
    {
        note(__func__, name, ids, value);
    }
    void setCurrentData(unsigned long const& id) override { note(__func__, id); }
    void setHistoricData(unsigned long const& id, History const& history) override { note(__func__, id, history); }
    void setAdapterData(Adapted const& data) override { note(__func__, data); }
    void setExistMonitoring(unsigned long const& id) override { note(__func__, id); }

    bool dispatch(bool flag, unsigned long classId, unsigned long opIndex, TipprmiStream& request,
                  TipprmiStream& reply) override
    {
        ++messages;
        return PerformanceServiceSkeleton::dispatch(flag, classId, opIndex, request, reply);
    }

private:
    template <class... Argument>
    bool note(char const* name, Argument const&... arguments)
    {
        called = name;
        places = {static_cast<void const*>(&arguments)...};
        return true;
    }
};

// Hands calls to another object as messages.
struct Relay final : TipprmiObjectSkeleton {
    explicit Relay(TipprmiObjectSkeleton& other) : to(other) {}
    bool dispatch(bool flag, unsigned long classId, unsigned long opIndex, TipprmiStream& request,
                  TipprmiStream& reply) override
    {
        return to.dispatch(flag, classId, opIndex, request, reply);
    }
    TipprmiObjectSkeleton& to;
};

TEST(TypedSkeleton, isCalledDirectlyWithTheCallersOwnArguments)
{
    Monitor monitor(TipprmiOID("monitor"));
    ASSERT_TRUE(monitor.activate());
    for (PerformanceServiceClient const& proxy :
         {PerformanceServiceClient(&monitor), PerformanceServiceClient(TipprmiOID("monitor"))}) {
        unsigned long const id = 7;
        unsigned long count = 0;
        History history{};
        EXPECT_TRUE(proxy.getHistoricData(id, count, history));
        EXPECT_THAT(monitor.places, testing::ElementsAre(&id, &count, &history));
        EXPECT_EQ(history[95], 8U);
        std::string const name = "name";
        proxy.trigger(name, {}, id);
        EXPECT_EQ(monitor.places.at(0), &name);
        EXPECT_EQ(monitor.messages, 0);
    }
}

template <class Row, class... A>
void callWithSamples(PerformanceServiceClient const& proxy, std::type_identity<std::tuple<A...>>)
{
    int seed = 0;
    std::tuple<std::remove_cvref_t<A>...> arguments{golden::Sample<std::remove_cvref_t<A>>::make(seed)...};
    std::apply([&proxy](auto&... argument) { (proxy.*Row::member)(argument...); }, arguments);
}

TEST(TypedSkeleton, servesMessagesForEveryOperation)
{
    Monitor monitor;
    Relay relay(monitor);
    PerformanceServiceClient const proxy(&relay);
    Operations<PerformanceServiceClient>::forEach([&]<class Row>(Row) {
        callWithSamples<Row>(proxy, std::type_identity<typename Row::Signature::Arguments>{});
        EXPECT_EQ(monitor.called, Row::name);
    });
    EXPECT_EQ(monitor.messages, 13);

    unsigned long count = 0;
    History history{};
    EXPECT_TRUE(proxy.getHistoricData(7, count, history));
    EXPECT_EQ(count, 7U);
    EXPECT_EQ(history[95], 8U);
    EXPECT_EQ(history[94], 0U) << "out-arguments start at zero on the server";
    Adapted data;
    EXPECT_TRUE(proxy.getAdapterData(sequenceOf<unsigned long>({1, 2, 3}), data));
    EXPECT_EQ(data.getLength(), 3U);
}

TEST(TypedSkeleton, runsNothingForARequestThatIsNotExactlyTheInArguments)
{
    Monitor monitor;
    for (char const* const bytes : {"", "00 00 00", "00 00 00 01 00"}) {
        TipprmiStream request = streamOf(bytes);
        TipprmiStream reply(100);
        EXPECT_TRUE(monitor.dispatch(true, 0xeabdd29f, 9, request, reply));
        EXPECT_TRUE(request.hasUnmarshallingFailed()) << bytes;
    }
    EXPECT_EQ(monitor.called, "");
    for (auto const& [classId, index] : {std::pair{0xeabdd29fUL, 13UL}, std::pair{0x3f270ae0UL, 0UL}}) {
        TipprmiStream request(100);
        TipprmiStream reply(100);
        EXPECT_FALSE(monitor.dispatch(true, classId, index, request, reply));
    }
}

class State final : public AdminStateSkeleton {
public:
    long get() override { return value; }
    bool set(long const& newValue) override
    {
        value = newValue;
        return true;
    }
    TipprmiSequence<AdminStatePolicyClient> getPolicies() override { return {}; }
    bool getPermissionState() override { return value == AdminStateClient::UNLOCKED; }
    void insertPolicy(AdminStatePolicyClient const&) override {}
    void removePolicy(AdminStatePolicyClient const&) override {}
    void notifyPermissionStateChange() override {}
    long value = AdminStateClient::UNLOCKED;
};

TEST(TypedSkeleton, servesTheInterfacesThatItsOwnExtends)
{
    State state;
    AdminStateClient const proxy(&state);
    EXPECT_TRUE(proxy.getPermissionState());
    EXPECT_TRUE(proxy.set(AdminStateClient::LOCKED));
    EXPECT_EQ(proxy.get(), AdminStateClient::LOCKED);
    EXPECT_EQ(proxy.internalGet(), AdminStateClient::LOCKED);
    EXPECT_FALSE(proxy.getPermissionState());
    EXPECT_TRUE(proxy.isInitialised());
    proxy.clear();
    EXPECT_EQ(state.value, 0);

    Relay relay(state);
    EXPECT_TRUE(AdminStateClient(&relay).set(AdminStateClient::UNLOCKED));
    EXPECT_TRUE(AdminStateClient(&relay).getPermissionState());
}

TEST(Proxy, failsItsCallsOnAnObjectOfAnotherClass)
{
    Monitor monitor;
    EXPECT_EQ(ConditionClient(&monitor).raise(), RunClient::FAILED);
    EXPECT_EQ(ConditionClient(&monitor).getPriority(), 0);
    ConditionClient(&monitor).setPriority(1);
    EXPECT_FALSE(FaultServiceClient(&monitor).getConditionGrp().isConnected());
    EXPECT_EQ(AdminStateClient(&monitor).getPolicies().getLength(), 0U);
    EXPECT_EQ(LocationIdClient(&monitor).toString(), "");
    EXPECT_EQ(AdminStateClient(&monitor).get(), 0);
    EXPECT_EQ(monitor.called, "");
}

TEST(Servant, servesLocalCapableAndRemoteOnlyOperations)
{
    long priority = 10;
    Servant servant(TipprmiOID("served"));
    servant.on<&ConditionClient::getPriority>([&] { return priority; })
        .on<&ConditionClient::setPriority>([&](long const& value) { priority = value; })
        .on<&ConditionClient::raise>([] { return RunClient::OK; })
        .on<&QelLongClient::get>([] { return 11L; })
        .on<&PerformanceServiceClient::getCurrentData>([](unsigned long const& id, unsigned long& value) {
            value += id;
            return true;
        });
    ConditionClient const condition(TipprmiOID("served"));
    EXPECT_TRUE(condition.isConnected());
    condition.setPriority(-3);
    EXPECT_EQ(condition.getPriority(), -3);
    EXPECT_EQ(condition.raise(), RunClient::OK);
    EXPECT_EQ(QelLongClient(TipprmiOID("served")).get(), 11);
    unsigned long value = 99;
    EXPECT_TRUE(PerformanceServiceClient(&servant).getCurrentData(5, value));
    EXPECT_EQ(value, 5U);

    EXPECT_EQ(condition.cancel(), RunClient::FAILED) << "not named, so unknown";
    EXPECT_FALSE(condition.isActive());
    servant.on<&ConditionClient::raise>([] { return RunClient::FAILED; });
    EXPECT_EQ(condition.raise(), RunClient::FAILED) << "the later implementation counts";
}

TEST(Servant, lendsWhatItHolds)
{
    using Ids = TipprmiSequence<unsigned long>;
    Adapted held;
    held.setLength(3);
    held[2].value1 = 7;
    Servant servant(TipprmiOID("lends"));
    bool isLending = true;
    servant
        .on<&PerformanceServiceClient::getAdapterData>([&](Ids const& ids, road::Lent<Adapted>& data) {
            if (isLending) {
                data.lend(held);
            } else {
                static_cast<Adapted&>(data).setLength(ids.getLength());
            }
            return true;
        })
        .on<&PerformanceServiceClient::getHistoricData>(
            [](unsigned long const& id, unsigned long& count, road::Lent<History>& history) {
                static History const zeroes{};
                history.lend(zeroes);
                count = id;
                return true;
            });
    PerformanceServiceClient const proxy(TipprmiOID("lends"));
    Ids ids;
    ids.setLength(5);
    for (int call = 0; call < 2; ++call) {
        Adapted told;
        EXPECT_TRUE(proxy.getAdapterData(ids, told));
        ASSERT_EQ(told.getLength(), 3U);
        EXPECT_EQ(told[2].value1, 7U);
        EXPECT_EQ(held.getLength(), 3U) << "it is the object's still";
    }
    isLending = false;
    Adapted told;
    EXPECT_TRUE(proxy.getAdapterData(ids, told));
    EXPECT_EQ(told.getLength(), 5U);
    unsigned long count = 0;
    History history{};
    history[95] = 1;
    EXPECT_TRUE(proxy.getHistoricData(4, count, history));
    EXPECT_EQ(count, 4U) << "an argument beside it is taken as it is";
    EXPECT_EQ(history[95], 0U);
}

TEST(Servant, mayReplaceAnImplementationWhileItRuns)
{
    Servant servant;
    std::string const text(100, 'x');
    std::string seen;
    servant.on<&LocationIdClient::toKey>([&, text] {
        servant.on<&LocationIdClient::toKey>([] { return std::string("second"); });
        seen = text;
        return std::string("first");
    });
    EXPECT_EQ(LocationIdClient(&servant).toKey(), "first");
    EXPECT_EQ(seen, text);
    EXPECT_EQ(LocationIdClient(&servant).toKey(), "second");
}

TEST(Servant, isGoneForItsProxiesWhenItIsDestroyed)
{
    ConditionClient const condition(TipprmiOID("short-lived"));
    {
        Servant servant(TipprmiOID("short-lived"));
        servant.on<&ConditionClient::getPriority>([] { return 1L; });
        EXPECT_EQ(condition.getPriority(), 1);
    }
    EXPECT_FALSE(condition.isConnected());
    EXPECT_EQ(condition.getPriority(), 0);
}

// Keeps the parameters of the first notification.
class Watcher final : public TreflectObserver {
public:
    Watcher() : TreflectObserver(TipprmiOID(""), nullptr, "watcher") {}
    ~Watcher() override { withdraw(); }
    bool detected() override { return false; }
    bool notify(TipprmiSequence<TipprmiAny> const& parameters) override
    {
        std::vector<std::string> forms;
        for (TipprmiAny const& parameter : parameters) {
            forms.push_back(hex(parameter));
        }
        if (++notifications == 1) {
            first.set_value(forms);
        }
        return true;
    }
    std::vector<std::string> awaitFirst()
    {
        auto future = first.get_future();
        bool const arrived = future.wait_for(std::chrono::seconds(20)) == std::future_status::ready;
        return arrived ? future.get() : std::vector<std::string>{"nothing arrived"};
    }
    std::promise<std::vector<std::string>> first;
    std::atomic<int> notifications = 0;
};

TEST(Observers, seeTheResultAndTheArgumentsOnEveryRoad)
{
    Monitor direct(TipprmiOID("observed/direct"));
    ASSERT_TRUE(direct.activate());
    Servant servant(TipprmiOID("observed/servant"));
    servant.on<&PerformanceServiceClient::getCurrentData>([](unsigned long const& id, unsigned long& value) {
        value = id + 1;
        return true;
    });
    for (char const* const id : {"observed/direct", "observed/servant"}) {
        PerformanceServiceClient const proxy{TipprmiOID(id)};
        Watcher watcher;
        EXPECT_FALSE(proxy.operation("noSuchOperation").postObserve(&watcher));
        TreflectOperation const operation = proxy.operation("getCurrentData");
        ASSERT_TRUE(operation.postObserve(&watcher));
        unsigned long value = 0;
        proxy.setCurrentData(3); // another operation
        EXPECT_TRUE(proxy.getCurrentData(5, value));
        EXPECT_EQ(value, 6U);
        EXPECT_THAT(watcher.awaitFirst(), testing::ElementsAre("00 00 00 01", "00 00 00 05", "00 00 00 06")) << id;
        EXPECT_TRUE(operation.removeObserver(&watcher));
        EXPECT_TRUE(proxy.getCurrentData(5, value));
        EXPECT_EQ(watcher.notifications, 1);
    }
    EXPECT_FALSE(direct.isObserved());
}

} // namespace
