// What single operations send and make of replies, byte by byte.
#include "broker/Log.h"
#include "clients/services/AdminStatePolicySkeleton.h"
#include "clients/services/AdminStateSkeleton.h"
#include "clients/services/ConditionSkeleton.h"
#include "clients/services/FaultServiceSkeleton.h"
#include "clients/services/LocationIdSkeleton.h"
#include "clients/services/PerformanceServiceSkeleton.h"
#include "rmi/ApplicationObjectSkeleton.h"
#include "rmi/Servant.h"
#include "tests/support/Exchange.h"

#include <functional>

// A managed object's own proxy, as most are.
class RackClient : public ApplicationObjectClient {
public:
    using Parent = ApplicationObjectClient;
    using ApplicationObjectClient::ApplicationObjectClient;
};

namespace {

TEST(Request, holdsIdentifierIndexAndInArguments)
{
    ApplicationObjectClient const app(TipprmiOID("app/2"));
    bool granted = true;
    TipprmiArray<unsigned long, 96> history{};
    history[95] = 0x01020304;
    PerformanceServiceClient::IdentData_t adapterData{1, true, 2, 3, history};
    TipprmiSequence<PerformanceServiceClient::IdentData_t> answer;

    struct {
        std::function<void(Recorder&)> call;
        Recorder::Call expected;
    } const cases[] = {
        {[&](Recorder& to) { ApplicationObjectClient(&to).requestSupportRelease(app, granted); },
         {0xe80e97c6, 13, "00 00 00 01 00 00 00 05 61 70 70 2F 32"}},
        {[&](Recorder& to) { RackClient(&to).getFaultSvc(); }, {0xe80e97c6, 4, ""}},
        {[&](Recorder& to) { RackClient(&to).reset(); }, {0xe80e97c6, 22, ""}},
        {[&](Recorder& to) { ApplicationObjectSenaPolicyClient(&to).getState(app); },
         {0xf77e6ede, 0, "00 00 00 01 00 00 00 05 61 70 70 2F 32"}},
        {[&](Recorder& to) { ConditionClient(&to).setPriority(ConditionClient::STANDARD_PRIORITY); },
         {0x3f270ae0, 18, "00 00 00 0A"}},
        {[&](Recorder& to) { ConditionClient(&to).raise(); }, {0x3f270ae0, 12, ""}},
        {[&](Recorder& to) {
             FaultServiceClient(&to).notificationFromCondition(FaultServiceClient::CONDITION_NOTIFICATION_3,
                                                               ConditionClient(TipprmiOID("c")));
         },
         {0x04b042b1, 10, "00 00 00 03 00 00 00 01 00 00 00 01 63"}},
        {[&](Recorder& to) { FaultServiceClient(&to).setOperState(FaultServiceClient::DISABLED); },
         {0x04b042b1, 4, "00 00 00 0C"}},
        {[&](Recorder& to) { PerformanceServiceClient(&to).setHistoricData(7, history); },
         {0xeabdd29f, 10, "00 00 00 07 " + repeated(95, "00 00 00 00") + " 01 02 03 04"}},
        {[&](Recorder& to) { PerformanceServiceClient(&to).getAdapterData({}, answer); },
         {0xeabdd29f, 2, "00 00 00 00"}},
        {[&](Recorder& to) { PerformanceServiceClient(&to).setAdapterData(sequenceOf({adapterData})); },
         {0xeabdd29f, 11,
          "00 00 00 01 00 00 00 01 00 00 00 01 00 00 00 02 00 00 00 03 " + repeated(95, "00 00 00 00") +
              " 01 02 03 04"}},
        {[&](Recorder& to) {
             PerformanceServiceClient(&to).trigger("go", sequenceOf<unsigned long>({1, 2}), 9);
         },
         {0xeabdd29f, 8, "00 00 00 02 67 6F 00 00 00 02 00 00 00 01 00 00 00 02 00 00 00 09"}},
        {[&](Recorder& to) { AdminStateClient(&to).insertPolicy(AdminStatePolicyClient(TipprmiOID("p"))); },
         {0x50330cd4, 4, "00 00 00 01 00 00 00 01 70"}},
        {[&](Recorder& to) { AdminStateClient(&to).get(); }, {0xa6d4e092, 0, ""}},
        {[&](Recorder& to) { AdminStateClient(&to).set(AdminStateClient::LOCKED); }, {0xa6d4e092, 1, "00 00 00 02"}},
        {[&](Recorder& to) { AdminStateClient(&to).isReadonly(); }, {0x5df7b79b, 0, ""}},
        {[&](Recorder& to) { LocationIdClient(&to).containsType(LocationIdClient::LID_LOCATION_ID); },
         {0xd98a2bbd, 2, "00 00 00 01"}},
        {[&](Recorder& to) { LocationIdClient(&to).equals(LocationIdClient(TipprmiOID("l"))); },
         {0xd98a2bbd, 3, "00 00 00 01 00 00 00 01 6C"}},
    };
    for (auto const& [call, expected] : cases) {
        Recorder object;
        call(object);
        EXPECT_THAT(object.calls, testing::ElementsAre(expected));
    }
}

TEST(Reply, fillsOutArguments)
{
    Recorder object;
    object.reply = "00 00 00 00 00 00 00 00 00 00 00 01";
    bool granted = false;
    EXPECT_EQ(ApplicationObjectClient(&object).requestSupportRelease(ApplicationObjectClient(), granted),
              SetClient::OK);
    EXPECT_TRUE(granted);

    object.reply = "00 00 00 01 00 00 00 60 " + repeated(95, "00 00 00 00") + " 01 02 03 04";
    unsigned long count = 0;
    TipprmiArray<unsigned long, 96> history{};
    EXPECT_TRUE(PerformanceServiceClient(&object).getHistoricData(1, count, history));
    EXPECT_EQ(count, 96U);
    EXPECT_EQ(history[95], 0x01020304U);

    object.reply = "00 00 00 01 00 00 00 02 " + repeated(200, "00 00 00 07");
    TipprmiSequence<PerformanceServiceClient::IdentData_t> data;
    EXPECT_TRUE(PerformanceServiceClient(&object).getAdapterData({}, data));
    ASSERT_EQ(data.getLength(), 2U);
    EXPECT_TRUE(data[1].flag);
    EXPECT_EQ(data[1].history[95], 7U);
}

TEST(Reply, fillsOneOutArgumentBesideABool)
{
    golden::expectReplies({
        golden::replyTo<&PerformanceServiceClient::existMonitoring>("00 00 00 01 00 00 00 01"),
        golden::replyTo<&PerformanceServiceClient::getElapsedTime>("00 00 00 01 FF FF FF FF"),
    });
    golden::expectOfRefusedCalls({
        golden::replyTo<&PerformanceServiceClient::startMonitoring>("00 00 00 00 00 00 00 00"),
        golden::replyTo<&PerformanceServiceClient::getHistoricData>(repeated(4 + 4 + 4 * 96, "00")),
        golden::replyTo<&AdminStateClient::getPolicies>("00 00 00 00"),
    });
}

TEST(Reply, rebindsProxies)
{
    Servant group(TipprmiOID("group"));
    group.on<&FaultServiceClient::getOperState>([] { return long{FaultServiceClient::ENABLED}; });
    Servant policy(TipprmiOID("policy"));
    policy.on<&AdminStatePolicyClient::getState>([] { return true; });

    Recorder object;
    object.reply = "00 00 00 01 00 00 00 05 67 72 6F 75 70";
    FaultServiceClient const received = FaultServiceClient(&object).getConditionGrp();
    EXPECT_TRUE(received.isConnected());
    EXPECT_EQ(received.getOperState(), FaultServiceClient::ENABLED);

    object.reply = "00 00 00 02 00 00 00 01 00 00 00 06 70 6F 6C 69 63 79 00 00 00 01 00 00 00 00";
    TipprmiSequence<AdminStatePolicyClient> const policies = AdminStateClient(&object).getPolicies();
    ASSERT_EQ(policies.getLength(), 2U);
    EXPECT_TRUE(policies[0].getState());
    EXPECT_FALSE(policies[1].isConnected());
}

TEST(Reply, thatIsCutShortIsLoggedOnceAndGivesWhatCouldBeRead)
{
    struct {
        std::function<std::string(Recorder&)> call;
        char const* reply;
        char const* expected;
        char const* log;
    } const cases[] = {
        {[](Recorder& from) { return LocationIdClient(&from).toKey(); }, "00 00 00 03 61 62", "",
         "Unmarshall error on cc=0xD98A2BBD, mc=1"},
        {[](Recorder& from) { return wireForm(LocationIdClient(&from).containsType(1)); }, "00 00 01", "00 00 00 00",
         "Unmarshall error on cc=0xD98A2BBD, mc=2"},
        {[](Recorder& from) { return wireForm(ConditionClient(&from).getPriority()); }, "", "00 00 00 00",
         "Unmarshall error on cc=0x3F270AE0, mc=2"},
        {[](Recorder& from) {
             bool granted = true;
             auto const status = ApplicationObjectClient(&from).requestSupportRelease({}, granted);
             return wireForm(status) + (granted ? " granted" : "");
         },
         "00 00 00 00 00 00 00 00 00 00", "00 00 00 00 00 00 00 00", "Unmarshall error on cc=0xE80E97C6, mc=13"},
    };
    for (auto const& [call, reply, expected, log] : cases) {
        trs::LogCapture const capture;
        Recorder object;
        object.reply = reply;
        EXPECT_EQ(call(object), expected);
        ASSERT_EQ(capture.entries().size(), 1U) << log;
        EXPECT_EQ(capture.entries()[0].text, log);
        EXPECT_EQ(capture.entries()[0].severity, 4);
    }
}

class Place final : public LocationIdSkeleton {
public:
    std::string toString() override { return "rack 1"; }
    std::string toKey() override { return "key"; }
    bool containsType(unsigned long const& type) override { return &type == expected; }
    bool equals(LocationIdClient const& other) override { return &other == expected; }
    bool dispatch(bool, unsigned long, unsigned long, TipprmiStream&, TipprmiStream&) override
    {
        ADD_FAILURE() << "a call of this process was marshalled";
        return false;
    }
    void const* expected = nullptr;
};

TEST(LocationId, isAskedDirectlyWhenItLivesHere)
{
    Place place;
    LocationIdClient const proxy(&place);
    EXPECT_EQ(proxy.toString(), "rack 1");
    EXPECT_EQ(proxy.toKey(), "key");
    unsigned long const type = 1;
    place.expected = &type;
    EXPECT_TRUE(proxy.containsType(type));
    place.expected = &proxy;
    EXPECT_TRUE(proxy.equals(proxy));
}

TEST(LocationId, sendsThroughItsOwnDispatch)
{
    struct Diverted : LocationIdClient {
        bool dispatch(bool flag, unsigned long classId, unsigned long opIndex, TipprmiStream&,
                      TipprmiStream& reply) const override
        {
            EXPECT_TRUE(flag && classId == 0xd98a2bbd && opIndex == 1);
            reply.clear();
            return false;
        }
    };
    trs::LogCapture const capture;
    EXPECT_EQ(Diverted().toKey(), "");
    EXPECT_FALSE(capture.contains("Unmarshall error")) << "there was no reply to read";
}

} // namespace
