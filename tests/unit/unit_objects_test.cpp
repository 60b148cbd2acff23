// The simulated unit's objects, called with the library's proxies over the socket.
#include "adapter/NmiRmiAdapterClient.h"
#include "clients/services/ConditionClient.h"
#include "platform/TreflectObserver.h"
#include "rmi/ApplicationObjectClient.h"
#include "rmi/TipprmiArray.h"
#include "rmi/TipprmiSequence.h"
#include "tests/support/Programs.h"

#include <atomic>

namespace {

class UnitObjects : public ProgramTest {
protected:
    static ConditionClient condition(std::string const& name)
    {
        return ConditionClient(TipprmiOID("AppObject-1/Condition/" + name));
    }
    // What the fault service says: any active, any suppressed, one that counts; and enabled, and permitted.
    std::string states() const
    {
        std::string text;
        for (bool const state :
             {faults.isAnyActive(), faults.isAnySuppressed(), faults.conditionActive(),
              faults.getOperState() == FaultServiceClient::ENABLED, faults.getAdminState().getPermissionState()}) {
            text += state ? '1' : '0';
        }
        return text;
    }

    Unit sim = unit({"--address", "10.0.0.7", "--clock", "stepped"});
    TreflectORB const* const peer = peerAt(endpoint);
    ApplicationObjectClient const object{TipprmiOID("AppObject-1")};
    FaultServiceClient const faults = object.getFaultSvc();
};

TEST_F(UnitObjects, ConditionsAndFaultServiceAgree)
{
    ConditionClient const los = condition("los");
    ConditionClient const deg = condition("deg");
    EXPECT_EQ(states(), "00011");

    EXPECT_EQ(sim.does("raise deg"), "condition deg raised");
    EXPECT_TRUE(deg.isActive() && deg.isReportedToExtern() && !deg.disablesOperState() && !los.isActive());
    EXPECT_EQ(states(), "10111");
    deg.setReportToExtern(false);
    EXPECT_FALSE(deg.getReportToExtern() || deg.isReportedToExtern());

    EXPECT_EQ(los.raise(), RunClient::OK);
    sim.readUntil("condition los raised");
    sim.readUntil("operational state disabled");
    EXPECT_EQ(states(), "10100");
    EXPECT_EQ(los.suppress(), RunClient::OK);
    EXPECT_TRUE(los.isActive() && los.isSuppressed() && !los.isReportedToExtern());
    EXPECT_EQ(states(), "11111");
    EXPECT_EQ(deg.cancel(), RunClient::OK);
    EXPECT_EQ(states(), "11011");
    EXPECT_EQ(los.unsuppress(), RunClient::OK);
    EXPECT_EQ(states(), "10100");

    EXPECT_EQ(los.removeFromGroup(), RunClient::OK);
    EXPECT_EQ(los.removeFromGroup(), RunClient::FAILED);
    EXPECT_EQ(states(), "10011");
    EXPECT_EQ(los.addToGroup(FaultServiceClient(TipprmiOID("Elsewhere"))), RunClient::FAILED);
    EXPECT_EQ(los.addToGroup(faults.getConditionGrp()), RunClient::OK);
    EXPECT_EQ(states(), "10100");

    object.reset();
    EXPECT_EQ(states(), "00011");
}

TEST_F(UnitObjects, AGroupKnowsOnlyWhatItIsTold)
{
    ConditionClient const los = condition("los");
    EXPECT_EQ(los.activateWithoutGroup(), RunClient::OK);
    EXPECT_TRUE(los.isActive());
    EXPECT_EQ(states(), "10011");
    EXPECT_EQ(los.raise(), RunClient::OK);
    EXPECT_EQ(states(), "10100");
    EXPECT_EQ(los.deactivateWithoutGroup(), RunClient::OK);
    EXPECT_EQ(states(), "00100");
    faults.notificationFromCondition(FaultServiceClient::CONDITION_NOTIFICATION_1, los);
    EXPECT_EQ(states(), "00011");
    faults.notificationFromCondition(FaultServiceClient::CONDITION_NOTIFICATION_0, ConditionClient(TipprmiOID("x\ny")));
    sim.readUntil("'x\\x0ay' is ignored");
    faults.removeAllConditions();
    faults.notificationFromCondition(FaultServiceClient::CONDITION_NOTIFICATION_0, los);
    EXPECT_EQ(los.raise(), RunClient::OK);
    EXPECT_EQ(states(), "10011");
}

TEST_F(UnitObjects, KeepWhatIsSet)
{
    ConditionClient const temp = condition("temp");
    EXPECT_EQ(temp.getPriority(), ConditionClient::STANDARD_PRIORITY);
    temp.setPriority(-7);
    temp.setCurrentSeverity(5);
    temp.setDefaultSeverity(6);
    EXPECT_EQ(temp.getPriority(), -7);
    EXPECT_EQ(temp.getCurrentSeverity(), 5);
    temp.resetCurrentSeverity();
    EXPECT_EQ(temp.getCurrentSeverity(), 6);
    sim.writeLine("conditions");
    EXPECT_THAT(sim.readUntil("temp ("), testing::HasSubstr("inactive, not suppressed, severity 6, priority -7"));

    EXPECT_TRUE(faults.getWorkingState());
    faults.setWorkingState(false);
    EXPECT_FALSE(faults.getWorkingState());
    faults.setOperState(FaultServiceClient::DISABLED);
    EXPECT_EQ(states(), "00000");
    faults.setOperState(3);
    EXPECT_EQ(states(), "00000") << "3 is no operational state";
    EXPECT_EQ(object.setReportToExtern(false), SetClient::OK);
    EXPECT_FALSE(object.getReportToExtern());
}

TEST_F(UnitObjects, AdministrativeStateAndPoliciesPermitOperation)
{
    struct Counter : TreflectObserver {
        Counter() : TreflectObserver(TipprmiOID("Counter"), nullptr, "counter") {}
        ~Counter() override { withdraw(); }
        bool detected() override
        {
            ++count;
            return true;
        }
        std::atomic<int> count = 0;
    } changes;
    AdminStateClient const state = faults.getAdminState();
    ASSERT_TRUE(state.operation("notifyPermissionStateChange").postObserve(&changes));

    EXPECT_EQ(state.get(), AdminStateClient::UNLOCKED);
    EXPECT_TRUE(state.set(AdminStateClient::SHUTTING_DOWN));
    EXPECT_FALSE(state.getPermissionState());
    EXPECT_TRUE(state.set(AdminStateClient::DEFAULT));
    EXPECT_EQ(state.get(), AdminStateClient::UNLOCKED);
    for (long const wrong : {0L, 5L, -1L}) {
        EXPECT_FALSE(state.set(wrong));
    }
    sim.writeLine("state locked");
    sim.readUntil("administrative state locked");
    sim.readUntil("permission state change announced");
    EXPECT_EQ(state.get(), AdminStateClient::LOCKED);
    EXPECT_EQ(sim.does("state"), "locked, operation is not permitted");
    state.clear();
    EXPECT_TRUE(state.getPermissionState());

    auto const policies = state.getPolicies();
    ASSERT_EQ(policies.getLength(), 1U);
    EXPECT_TRUE(policies[0].getState());
    condition("los").raise();
    EXPECT_FALSE(policies[0].getState());
    EXPECT_FALSE(state.getPermissionState());
    state.removePolicy(policies[0]);
    EXPECT_TRUE(state.getPermissionState()) << "the policy objects no longer";
    AdminStatePolicyClient const gone(TipprmiOID("Gone"));
    state.insertPolicy(gone);
    state.insertPolicy(gone);
    EXPECT_EQ(state.getPolicies().getLength(), 1U);
    EXPECT_FALSE(state.getPermissionState()) << "a policy that does not answer permits nothing";
    state.removePolicy(gone);
    state.removePolicy(gone);
    EXPECT_EQ(sim.does("state"), "administrative state unlocked"); // one of the lines since then
    sim.readUntil("policy Gone removed");
    sim.readUntil("unlocked, operation is permitted");

    auto const end = std::chrono::steady_clock::now() + support::patience;
    while (changes.count < 8 && std::chrono::steady_clock::now() < end) {
        std::this_thread::yield();
    }
    EXPECT_EQ(changes.count, 8);
}

TEST_F(UnitObjects, PerformanceServiceCountsAndRemembersIntervals)
{
    PerformanceServiceClient const service = object.getPerformanceSvc();
    unsigned long value = 0;
    bool done = false;
    EXPECT_EQ(sim.does("tick"), "1 s passed, ended intervals: 0");
    EXPECT_TRUE(service.getCurrentData(2, value));
    EXPECT_EQ(value, 1000U);
    EXPECT_TRUE(service.stopMonitoring(2, done) && done);
    sim.writeLine("tick 900");
    sim.readUntil("ended intervals: 1");
    EXPECT_TRUE(service.getElapsedTime(value));
    EXPECT_EQ(value, 1U);

    unsigned long count = 0;
    TipprmiArray<unsigned long, 96> history{};
    EXPECT_TRUE(service.getHistoricData(3, count, history));
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(history[0], 900U);
    EXPECT_TRUE(service.getHistoricData(2, count, history));
    EXPECT_EQ(count, 0U) << "a subject that is not monitored has intervals";

    service.trigger("add", {}, 9);
    TipprmiSequence<unsigned long> ids;
    ids.push_back(3);
    service.trigger("add", ids, 99);
    service.trigger("other", ids, 5);
    sim.writeLine("tick 86400"); // 96 more intervals: the first is forgotten
    sim.readUntil("ended intervals: 96");
    EXPECT_TRUE(service.getHistoricData(3, count, history));
    EXPECT_EQ(count, 96U);
    EXPECT_EQ(history[0], 999U);
    EXPECT_EQ(history[95], 900U);
    EXPECT_TRUE(service.getHistoricData(1, count, history));
    EXPECT_EQ(history[95], 112500000U);

    ids.push_back(7);
    TipprmiSequence<PerformanceServiceClient::IdentData_t> data;
    EXPECT_FALSE(service.getAdapterData(ids, data)) << "there is no subject 7";
    ASSERT_EQ(data.getLength(), 2U);
    EXPECT_TRUE(data[0].flag && data[0].value1 == 3 && data[0].value3 == 96 && data[0].history[0] == 999);
    EXPECT_TRUE(!data[1].flag && data[1].value1 == 7);
    data[0].value2 = 42;
    data[0].value3 = 1000; // more than there can be
    service.setAdapterData(data);
    EXPECT_TRUE(service.getCurrentData(3, value));
    EXPECT_EQ(value, 42U);
    EXPECT_TRUE(service.getHistoricData(3, count, history));
    EXPECT_EQ(count, 96U);
    service.setHistoricData(2, history);
    service.setExistMonitoring(2);
    bool exists = false;
    EXPECT_TRUE(service.existMonitoring(2, exists) && exists);
    EXPECT_FALSE(service.existMonitoring(7, exists) || exists);
    EXPECT_FALSE(service.startMonitoring(7, done) || done);
    EXPECT_FALSE(service.getCurrentData(7, value) || service.getHistoricData(7, count, history));
    EXPECT_TRUE(service.resetMonitoring(done) && done);
    EXPECT_TRUE(service.getHistoricData(2, count, history));
    EXPECT_EQ(count, 0U);

    EXPECT_EQ(object.createPerformanceSvc(), SetClient::FAILED);
    EXPECT_EQ(object.destroyPerformanceSvc(), SetClient::OK);
    EXPECT_EQ(object.destroyPerformanceSvc(), SetClient::FAILED);
    EXPECT_FALSE(service.isConnected());
    EXPECT_TRUE(object.getPerformanceSvc().getOID().isNull());
    EXPECT_TRUE(sim.writeLine("tick 7")); // the unit's time passes without it
    sim.readUntil("7 s passed");
    EXPECT_EQ(object.createPerformanceSvc(), SetClient::OK);
    EXPECT_TRUE(service.getElapsedTime(value));
    EXPECT_EQ(value, 0U);
}

TEST_F(UnitObjects, TheObjectHasAPlaceAndSupportRelations)
{
    ASSERT_TRUE(object.hasLocationId());
    LocationIdClient const location = object.getLocationId();
    EXPECT_EQ(location.toKey(), "1.2.3");
    EXPECT_THAT(location.toString(), testing::HasSubstr("slot 2"));
    EXPECT_TRUE(location.containsType(LocationIdClient::LID_LOCATION_ID) && !location.containsType(2));
    EXPECT_TRUE(location.equals(object.getLocationId()));
    EXPECT_FALSE(location.equals(LocationIdClient(TipprmiOID("Elsewhere"))));

    ApplicationObjectClient const other(TipprmiOID("AppObject-2"));
    bool granted = true;
    EXPECT_EQ(object.requestSupportRelease(other, granted), SetClient::OK);
    EXPECT_FALSE(granted) << "it is not supported at all";
    EXPECT_EQ(object.startSupportOf(other), SetClient::OK);
    EXPECT_EQ(object.startSupportOf(other), SetClient::FAILED);
    EXPECT_EQ(object.isSupportedBy(object), SetClient::OK);
    EXPECT_EQ(object.isSupportedBy(ApplicationObjectClient()), SetClient::FAILED);
    ASSERT_EQ(object.getServiceConsumers().getLength(), 1U);
    EXPECT_EQ(object.getServiceConsumers()[0].getOID(), other.getOID());
    ASSERT_EQ(object.getServiceProviders().getLength(), 1U);
    EXPECT_TRUE(object.getServiceProviders()[0].hasLocationId());
    EXPECT_EQ(object.requestSupportRelease(other, granted), SetClient::OK);
    EXPECT_TRUE(granted);
    object.setSenaPolicy(ApplicationObjectSenaPolicyClient(TipprmiOID("Gone")));
    EXPECT_EQ(object.requestSupportRelease(other, granted), SetClient::OK);
    EXPECT_FALSE(granted) << "the policy does not answer";
    object.clearSenaPolicy();
    EXPECT_EQ(object.requestSupportRelease(other, granted), SetClient::OK);
    EXPECT_TRUE(granted);
    EXPECT_EQ(object.stopSupportOf(other), SetClient::OK);
    EXPECT_EQ(object.isNoLongerSupportedBy(object), SetClient::OK);
    EXPECT_EQ(object.getServiceConsumers().getLength() + object.getServiceProviders().getLength(), 0U);
    object.ready();
    object.checkSenaState();
    sim.readUntil("ready to work");
    sim.readUntil("support state checked");
}

TEST_F(UnitObjects, TheAgentAnswersAsItIsTold)
{
    NmiRmiAdapterClient const agent{TipprmiOID(NmiRmiAdapterClient::NMI_RMI_ADAPTER_SER_NAME)};
    NmiRmiAdapterClient::AlarmInfo const alarm{NmiRmiAdapterClient::ALARM_TYPE_1, NmiRmiAdapterClient::ALARM_STATE_2};
    EXPECT_EQ(agent.getPublicIpAddrRmi(), "10.0.0.7");
    EXPECT_EQ(sim.does("address \"\""), "no address");
    EXPECT_EQ(agent.getPublicIpAddrRmi(), "");
    EXPECT_TRUE(agent.sendAlarmRmi(alarm));
    EXPECT_EQ(sim.readLine(), "alarm 1,2 received and accepted");
    EXPECT_EQ(sim.does("alarms refuse"), "alarms are refused");
    EXPECT_FALSE(agent.sendAlarmRmi(alarm));
    EXPECT_EQ(sim.readLine(), "alarm 1,2 received and refused");
}

} // namespace
